@@ Who speaks, and in what colour the name stands. The ones with a picture stand on the stage.

Novel["people"]({
    maud = {name = "Maud Orrin", ink = [255, 196, 128, 255], picture = "maud.png", faces = {grave = "maud-grave.png", moved = "maud-moved.png"}},
    tobias = {name = "Tobias Fenn", ink = [170, 214, 196, 255], picture = "tobias.png", faces = {glad = "tobias-glad.png", sorry = "tobias-sorry.png"}},
    tansy = {name = "Tansy", ink = [255, 150, 104, 255], picture = "tansy.png", faces = {glad = "tansy-glad.png", sorry = "tansy-sorry.png"}},
    cat = {name = "Barometer", ink = [214, 206, 196, 255], picture = "cat.png", faces = {asleep = "cat-asleep.png"}},
    you = {name = "You", ink = [198, 204, 232, 255]}
})
