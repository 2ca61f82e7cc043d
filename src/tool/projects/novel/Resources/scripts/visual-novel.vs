@@ The story. Scenes follow each other; a page is an entry with a text, a choice or an ending.

@@ Who speaks, and in which ink (red, green, blue, alpha). A `picture` is a PNG file of Resources/package/pictures.
Novel["people"]({
    ann = {name = "Ann", ink = [255, 200, 140, 255]}
})

@@ Where it happens. A place may have a `picture`, `light`, `music` and `weather`.
Novel["places"]({
    inn = {},
    road = {}
})

@@ `set` and `add` are what the story remembers; `{coins}` in a text says it; `go` leads to a mark or a scene.
Novel["scene"]("inn", [
    {place = "inn", set = {coins = 3}, text = "Rain had filled the inn."},
    {who = "ann", text = "A room? That will be two.", choice = [
        {text = "Pay her", set = "slept", add = {coins = -2}, go = "night"},
        {text = "Walk on", go = "leave"}
    ]},
    {mark = "night", text = "I slept well, with {coins} coin left."},
    {mark = "leave", unless = "slept", who = "ann", text = "Then mind the ford."}
])

@@ `when` and `unless` say whether an entry counts.
Novel["scene"]("road", [
    {place = "road", when = "slept", text = "The road was dry.", ending = "dry"},
    {text = "The ford was deep.", ending = "wet"}
])

Novel["endings"]({
    dry = {title = "Dry", line = "There is another ending."},
    wet = {title = "Wet", line = "There is another ending."}
})

Novel["play"]({name = "@NAME@", title = [{text = "@NAME@", font = "title"}], place = "inn"})
