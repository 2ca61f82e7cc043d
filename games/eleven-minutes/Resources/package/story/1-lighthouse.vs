@@ The first evening, on the Point.

story("lighthouse", [
    {place = "dusk", cast = ["", "", "", ""], say = "The post boat put me off at Hollin Point with my tools, a loaf, and a letter that said only: The lamp has begun to sleep. Please come."},
    {say = "I mend clocks. A lighthouse lamp is a clock with one very large hand, so I came."},
    {cast = ["", "", "maud", ""], who = "maud", say = "You’ll be the clock-mender. Maud Orrin. I keep the Point. Mind the third step; it’s been loose since my mother’s day."},
    {who = "maud", say = "Three nights now the lamp has stopped turning and gone dark. Always at eleven minutes to four. Always until four exactly."},
    {who = "you", say = "And then it starts again?"},
    {who = "maud", say = "By itself. As if it had only nodded off."},
    {cast = ["", "", "", ""], sound = "gears", say = "I had the gear-case open before the kettle boiled. Nothing worn, nothing rusted. The clockwork was better kept than my own."},
    {say = "But between two teeth of the great wheel lay a beech leaf, folded small, still copper, still soft. It would hold the wheel a while and then let go."},
    {say = "No beech grows on the Point. I had looked, coming up: thrift, heather, and a wind that would not have stood for one."},
    {say = "Under the wheel a brass plate had been painted over. I scraped one line of it clear."},
    {runes = "<rune>Dim me for the wings</rune>", sound = "chime"},
    {say = "Letters of the old coast kind. I could copy them. I could not read them."},
    {cast = ["", "", "maud", ""], say = "Maud came up with the tea. The leaf was still in my hand.", choose = [
        {say = "Show her the leaf", sets = "told", go = "shown"},
        {say = "Close your hand on it", go = "hidden"}
    ]},
    {mark = "shown", who = "maud", say = "Beech. Well. My brother Edmund used to come home with those in his hat."},
    {who = "maud", say = "He kept this lamp before me. There was a bad night, and he walked inland, and we stopped saying his name because it was easier. It wasn’t easier."},
    {say = "She took the leaf to the window and looked at it for as long as one looks at a photograph.", go = "runes"},
    {mark = "hidden", who = "you", say = "Dust in the works, perhaps."},
    {who = "maud", say = "Perhaps. You’ve an honest trade, for someone who says perhaps so quickly."},
    {mark = "runes", who = "maud", say = "If it’s old letters you’ve found, Tobias Fenn at the library reads them. He’ll say he has no time. He has nothing but."},
    {say = "It began to rain before I reached the road."}
])
