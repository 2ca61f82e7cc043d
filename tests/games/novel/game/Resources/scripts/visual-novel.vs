Novel["people"]({ann = {name = "Ann", ink = [255, 200, 140, 255]}})
Novel["places"]({inn = {}, road = {}})
Novel["scene"]("inn", [
    {place = "inn", set = {coins = 3}, text = "The inn was nearly full."},
    {text = "Rain ran down the panes."},
    {who = "ann", text = "A room?", choice = [
        {text = "Yes, please", set = "slept", add = {coins = -2}, go = "night"},
        {text = "No, thank you", go = "leave"},
        {text = "For my horse, too", when = {coins = 5}, go = "night"}
    ]},
    {mark = "night", text = "I slept well, and had {coins} coin left."},
    {mark = "leave", when = "slept", who = "ann", text = "Safe travels."},
    {unless = "slept", who = "ann", text = "Then mind the ford."}
])
Novel["scene"]("road", [
    {place = "road", text = "The road went on."},
    {text = "So did I."},
    {text = "By noon it was dry.", ending = "dry"}
])
Novel["endings"]({dry = {title = "Dry at last", line = "It had only rained."}})
Novel["play"]({name = "The inn", title = [{text = "The inn", font = "title"}], place = "inn"})
