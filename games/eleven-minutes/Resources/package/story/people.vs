@@ Who speaks, and in what colour the name stands. The ones with a picture stand on the stage.

Novel["people"]({
    maud = {name = "Maud Orrin", ink = [255, 196, 128, 255], picture = "maud.png"},
    tobias = {name = "Tobias Fenn", ink = [170, 214, 196, 255], picture = "tobias.png"},
    tansy = {name = "Tansy", ink = [255, 150, 104, 255], picture = "tansy.png"},
    cat = {name = "Barometer", ink = [214, 206, 196, 255], picture = "cat.png"},
    you = {name = "You", ink = [198, 204, 232, 255]}
})
