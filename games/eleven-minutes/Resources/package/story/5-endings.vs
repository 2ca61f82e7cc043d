@@ What became of the lamp.

Novel["scene"]("steady", [
    {mark = "steady", place = "works", cast = ["", "", "maud:grave", ""], sound = "gears", text = "I cleaned the wheel, oiled the arbor, and fitted a guard that no leaf could pass. At eleven minutes to four the lamp was burning. At four it was burning still. It was very good work."},
    {text = "All through those eleven minutes something was tapping at the glass. Maud looked into her tea, and I counted my tools."},
    {who = "maud", text = "You’ll want the early boat."},
    {place = "morning", cast = ["", "", "", ""], text = "In the morning there was sweeping to do round the foot of the tower. Somebody in a red cloak was doing it already."},
    {when = "promised", text = "She looked up once. She had a way of not waving that I have not forgotten."},
    {unless = "promised", text = "She did not look up. I had not thought she would."},
    {text = "The lamp at Hollin Point has never failed since. I am told that it can be seen for nineteen miles.", ending = "steady"}
])

Novel["scene"]("crossing", [
    {mark = "crossing", place = "waiting", cast = ["", "", "", ""], sound = "gears", text = "At eleven minutes to four the great wheel lifted its new tooth. The lamp went down like an eye closing, and under our feet the bell began."},
    {sound = "bell", text = "For a while there was only that: a bell, the sea, four people not speaking, and stars I had not known were there."},
    {cast = ["", "", "tansy:glad", ""], who = "tansy", text = "Listen."},
    {place = "crossing", cast = ["", "", "", ""], sound = "birds", text = "A thin sound, like thread drawn through cloth. Then another. Then a whole sky of it, going over from the sea to the land, above a dark house with its people out on the stairs."},
    {cast = ["", "tobias", "", ""], sound = "bell", when = "asked", who = "tobias", text = "I can hear the Point. Wherever you were out there, you’d hear it. He would have heard it."},
    {cast = ["", "tobias:sorry", "", ""], sound = "bell", unless = "asked", who = "tobias", text = "You should have knocked. ... But I can hear the Point. He would have heard it."},
    {cast = ["maud:moved", "", "tansy:glad", ""], when = "told", who = "maud", text = "Oh, Edmund. You only had to say."},
    {cast = ["maud:grave", "", "tansy:glad", ""], unless = "told", who = "maud", text = "So that is what we were all so angry with."},
    {who = "tansy", sound = "birds", text = "Six thousand. At least. I lost count because of all of you breathing."},
    {place = "morning", cast = ["", "", "", ""], text = "At four the lamp opened its eye again, and found nothing there to hurt. It turned until the sun made it look foolish."},
    {place = "kitchen", cast = ["", "", "maud:moved", ""], text = "I put my bill on the breakfast table. Maud crossed out the sum and wrote under it: One step, third from the bottom."},
    {text = "I said that I would stay a day and see to it. It took until spring.", ending = "crossing"}
])

Novel["endings"]({
    steady = {place = "morning", title = "The Steady Light", line = "The lamp burns, and the glass wants sweeping. There is another ending."},
    crossing = {place = "crossing", title = "Eleven Minutes Dark", line = "The lamp sleeps, the bell speaks, and the sky goes over."}
})
