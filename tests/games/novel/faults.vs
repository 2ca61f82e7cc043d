Novel["people"]({ann = {name = "Ann"}})
Novel["places"]({inn = {}})
Novel["scene"]("inn", [
    {place = "cellar", text = "Down."},
    {who = "bob", text = "Up.", go = "nowhere"},
    {cast = ["eve", "", "", ""], text = "Out?", choice = [{text = "Yes", go = "moon"}], ending = "happy"}
])
Novel["play"]({name = "Faulty", title = []})
