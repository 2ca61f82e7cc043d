@@ The same night, under the lamp.

Novel["scene"]("night", [
    {place = "night", cast = ["", "", "", ""], unless = "promised", text = "By three in the morning I had my tools laid out, and Maud had the kettle on. The lamp went round above us, nineteen miles of it.", go = "steady"},
    {place = "works", cast = ["maud", "cat:asleep", "tansy", "tobias"], text = "By three in the morning there were four of us about the gear-case, and the cat, whose name was Barometer. He was lying flat. Maud said that meant fair."},
    {cast = ["maud:moved", "cat:asleep", "tansy", "tobias"], when = "told", who = "maud", text = "Come into the light, child. Yes. That’s Edmund’s chin. He never knew what to do with it either."},
    {cast = ["maud:grave", "cat:asleep", "tansy:sorry", "tobias"], unless = "told", who = "maud", text = "You might have shown me that leaf, clock-mender. I’d have liked one evening to get ready for a face like hers."},
    {cast = ["maud:grave", "cat", "tansy:sorry", "tobias:sorry"], sound = "page", who = "tansy", text = "This is box nine. The other eight are the same."},
    {place = "night", cast = ["", "", "", ""], text = "Nobody said anything for a time. Above us the lamp went round and round, like someone looking for the door."},
    {place = "works", cast = ["maud:grave", "cat", "tansy", "tobias:sorry"], when = "asked", who = "tobias", text = "My father drowned in those eleven minutes. I’ve had twenty-six years to think. It wasn’t the dark that drowned him. It was that nobody out there could hear the Point."},
    {place = "works", cast = ["maud:grave", "cat", "tansy", "tobias:sorry"], unless = "asked", who = "tobias", text = "You read my page, so you know what you’re asking of me. I’d sooner hear it from somebody who knocks."},
    {who = "you", text = "There’s an old fog bell under the gallery. I can cut a tooth into the great wheel: eleven minutes of dark, and the bell struck all the while. Ships would hear the Point. The birds would see nothing but stars."},
    {when = "told", go = "trusted"},
    {when = "asked", go = "trusted"},
    {who = "maud", text = "No. That wants three people’s trust, clock-mender, and I count one, and she’s twelve."},
    {who = "tansy", text = "Nearly thirteen."},
    {who = "maud", text = "See to the lamp, please. As we agreed.", go = "steady"},
    {mark = "trusted", cast = ["maud:moved", "cat", "tansy", "tobias"], when = "told", who = "maud", text = "Edmund asked me to help him with that bell, the summer before. I was busy. I’m not busy now."},
    {cast = ["maud:moved", "cat", "tansy", "tobias"], when = "asked", unless = "told", who = "tobias", text = "Maud. If I can bear it, the Point can."},
    {cast = ["", "", "", ""], text = "They were all looking at me. The file was in my hand. It was twenty to four.", choice = [
        {text = "Cut the tooth, and let the lamp sleep", go = "crossing"},
        {text = "Put the file away. A lamp should burn", go = "steady"}
    ]}
])
