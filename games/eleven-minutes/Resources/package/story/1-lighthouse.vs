@@ The first evening, on the Point.

Novel["scene"]("lighthouse", [
    {place = "dusk", cast = ["", "", "", ""], text = "The post boat put me off at Hollin Point with my tools, a loaf, and a letter that said only: The lamp has begun to sleep. Please come."},
    {text = "I mend clocks. A lighthouse lamp is a clock with one very large hand, so I came."},
    {cast = ["", "", "maud", ""], who = "maud", text = "You’ll be the clock-mender. Maud Orrin. I keep the Point. Mind the third step; it’s been loose since my mother’s day."},
    {cast = ["", "", "maud:grave", ""], who = "maud", text = "Three nights now the lamp has stopped turning and gone dark. Always at eleven minutes to four. Always until four exactly."},
    {who = "you", text = "And then it starts again?"},
    {cast = ["", "", "maud", ""], who = "maud", text = "By itself. As if it had only nodded off."},
    {place = "gears", cast = ["", "", "", ""], sound = "gears", text = "I had the gear-case open before the kettle boiled. Nothing worn, nothing rusted. The clockwork was better kept than my own."},
    {text = "But between two teeth of the great wheel lay a beech leaf, folded small, still copper, still soft. It would hold the wheel a while and then let go."},
    {text = "No beech grows on the Point. I had looked, coming up: thrift, heather, and a wind that would not have stood for one."},
    {text = "Under the wheel a brass plate had been painted over. I scraped one line of it clear."},
    {runes = "Dim me for the wings", sound = "chime"},
    {text = "Letters of the old coast kind. I could copy them. I could not read them."},
    {cast = ["", "", "maud", ""], text = "Maud came up with the tea. The leaf was still in my hand.", choice = [
        {text = "Show her the leaf", set = "told", go = "shown"},
        {text = "Close your hand on it", go = "hidden"}
    ]},
    {mark = "shown", cast = ["", "", "maud:moved", ""], who = "maud", text = "Beech. Well. My brother Edmund used to come home with those in his hat."},
    {cast = ["", "", "maud:grave", ""], who = "maud", text = "He kept this lamp before me. There was a bad night, and he walked inland, and we stopped saying his name because it was easier. It wasn’t easier."},
    {text = "She took the leaf to the window and looked at it for as long as one looks at a photograph.", go = "runes"},
    {mark = "hidden", who = "you", text = "Dust in the works, perhaps."},
    {cast = ["", "", "maud:grave", ""], who = "maud", text = "Perhaps. You’ve an honest trade, for someone who says perhaps so quickly."},
    {mark = "runes", cast = ["", "", "maud", ""], who = "maud", text = "If it’s old letters you’ve found, Tobias Fenn at the library reads them. He’ll say he has no time. He has nothing but."},
    {place = "dusk", cast = ["", "", "", ""], text = "It began to rain before I reached the road."}
])
