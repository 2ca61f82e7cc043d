@@ The same night, under the lamp.

story("night", [
    {place = "night", cast = ["", "", "", ""], unless = "promised", say = "By three in the morning I had my tools laid out, and Maud had the kettle on. The lamp went round above us, nineteen miles of it.", go = "steady"},
    {place = "night", cast = ["maud", "cat", "tansy", "tobias"], say = "By three in the morning there were four of us about the gear-case, and the cat, whose name was Barometer. He was lying flat. Maud said that meant fair."},
    {when = "told", who = "maud", say = "Come into the light, child. Yes. That’s Edmund’s chin. He never knew what to do with it either."},
    {unless = "told", who = "maud", say = "You might have shown me that leaf, clock-mender. I’d have liked one evening to get ready for a face like hers."},
    {sound = "page", who = "tansy", say = "This is box nine. The other eight are the same."},
    {say = "Nobody said anything for a time. Above us the lamp went round and round, like someone looking for the door."},
    {when = "asked", who = "tobias", say = "My father drowned in those eleven minutes. I’ve had twenty-six years to think. It wasn’t the dark that drowned him. It was that nobody out there could hear the Point."},
    {unless = "asked", who = "tobias", say = "You read my page, so you know what you’re asking of me. I’d sooner hear it from somebody who knocks."},
    {who = "you", say = "There’s an old fog bell under the gallery. I can cut a tooth into the great wheel: eleven minutes of dark, and the bell struck all the while. Ships would hear the Point. The birds would see nothing but stars."},
    {when = "told", go = "trusted"},
    {when = "asked", go = "trusted"},
    {who = "maud", say = "No. That wants three people’s trust, clock-mender, and I count one, and she’s twelve."},
    {who = "tansy", say = "Nearly thirteen."},
    {who = "maud", say = "See to the lamp, please. As we agreed.", go = "steady"},
    {mark = "trusted", when = "told", who = "maud", say = "Edmund asked me to help him with that bell, the summer before. I was busy. I’m not busy now."},
    {when = "asked", unless = "told", who = "tobias", say = "Maud. If I can bear it, the Point can."},
    {cast = ["", "", "", ""], say = "They were all looking at me. The file was in my hand. It was twenty to four.", choose = [
        {say = "Cut the tooth, and let the lamp sleep", go = "crossing"},
        {say = "Put the file away. A lamp should burn", go = "steady"}
    ]}
])
