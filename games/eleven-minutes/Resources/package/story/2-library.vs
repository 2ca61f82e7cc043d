@@ The next afternoon, in the rain.

Novel["scene"]("library", [
    {place = "library", cast = ["", "", "", ""], text = "The library at Hollin had been a chapel once. That afternoon the rain had the windows to itself."},
    {cast = ["", "tobias", "", ""], who = "tobias", text = "We close at six, or when I’ve finished this chapter. You’re wet. Sit by the lamp. The atlases are dry and nobody needs them."},
    {who = "you", text = "Can you read this?"},
    {runes = "Dim me for the wings"},
    {cast = ["", "tobias:glad", "", ""], who = "tobias", text = "Strand-runes. The lampwrights used them for whatever they didn’t want the owners to know. It says: Dim me for the wings."},
    {who = "you", text = "Whose wings?"},
    {cast = ["", "tobias", "", ""], who = "tobias", text = "The log would tell you. I have all of the Point’s logs here. Sixty years of wind and oil, in beautiful handwriting."},
    {sound = "page", text = "He laid down the last book that Edmund Orrin wrote. It opened at October by itself, as a door does that has often been leaned on. One page had been cut out, close and clean."},
    {cast = ["", "tobias:sorry", "", ""], who = "tobias", text = "Ah."},
    {cast = ["", "", "", ""], text = "It was the Ah of a man who has known a thing for a long time. He went to see about the tea. In the open drawer of his desk lay a sheet of the log’s blue paper.", choice = [
        {text = "Wait, and ask him", set = "asked", go = "asked"},
        {text = "Read it while the kettle sings", go = "read"}
    ]},
    {mark = "asked", cast = ["", "tobias:sorry", "", ""], who = "tobias", text = "You could have looked. I left the drawer open so that I wouldn’t have to decide. Here. I’ll hold the lamp.", go = "log"},
    {mark = "read", sound = "page", text = "The paper had been folded and unfolded until it was nearly cloth."},
    {mark = "log", sound = "page", text = "“14 October. Put out the lamp at eleven to four for the crossing, as every autumn. The Merrow was late home and we did not know it. She found the Shelf in the dark. Seven came ashore. Jonah Fenn did not. E. Orrin.”"},
    {cast = ["", "tobias:sorry", "", ""], unless = "asked", who = "tobias", text = "I had hoped you would ask. It isn’t a secret. It’s only mine."},
    {cast = ["", "tobias:sorry", "", ""], who = "tobias", text = "Jonah was my father. I was four. Edmund Orrin walked inland that winter, and the lamp has burned every night since. I’ve never known whether to be glad of it."},
    {who = "you", text = "What was it that crossed?"},
    {who = "tobias", text = "He doesn’t say. I suppose that in those days everybody knew."},
    {cast = ["", "tobias", "", ""], when = "asked", who = "tobias", text = "There’s a ring of beeches inland, at the wayside shrine. If leaves are walking to the lighthouse, that’s where they start. Take my father’s lantern. I’d like it back, which means: come back."},
    {unless = "asked", who = "tobias", text = "There are beeches inland, at the wayside shrine. I expect that’s all you came for."},
    {text = "I went out by the side door, where the rain was thinking of stopping."}
])
