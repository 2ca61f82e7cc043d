@@ Towards evening, among the beeches.

Novel["scene"]("grove", [
    {place = "grove", cast = ["", "", "", ""], text = "The shrine was a stone no taller than a child, with a slate roof and a shelf for lamps. The beeches stood round it like people who have just stopped talking."},
    {cast = ["", "", "tansy", ""], who = "tansy", text = "You’re standing on the Tuesday leaves."},
    {who = "you", text = "Is there a difference?"},
    {cast = ["", "", "tansy:glad", ""], who = "tansy", text = "Tuesday’s are the ones I fold."},
    {text = "She was twelve or so, and her cloak was the red of a fox that has decided to be seen."},
    {cast = ["", "", "tansy", ""], who = "tansy", text = "I’m Tansy. You’re the one who mends the lamp. I was hoping you’d be slower."},
    {who = "you", text = "You’ve been stopping it."},
    {who = "tansy", text = "I’ve been letting it sleep. Eleven minutes. Grandad said that’s how long the front of them takes to go over."},
    {who = "you", text = "The front of what?"},
    {cast = ["", "", "tansy:glad", ""], who = "tansy", text = "Redwings. They come in off the sea in the dark, thousands and thousands, and they steer by the stars. A lamp is a star that’s too near. They turn to it and then they can’t leave it."},
    {cast = ["", "", "", ""], text = "From under the slates she took a shoebox. In it, on moss, lay small brown birds with a cream stripe over the eye and rust beneath the wing. The box had a number. It was nine."},
    {cast = ["", "", "tansy:sorry", ""], who = "tansy", text = "Those are from before I knew about the third step. I kept waking the lady."},
    {who = "you", text = "Your grandad was Edmund Orrin."},
    {who = "tansy", text = "He died in spring. He always meant to walk back and tell them it was for the birds, and he never did, so I’m doing it. Only nobody there knows that I’m anybody."},
    {when = "told", who = "you", text = "Maud knew the leaf. She said his name."},
    {cast = ["", "", "tansy", ""], when = "told", who = "tansy", text = "Did she? What did her face do?"},
    {when = "told", who = "you", text = "It got younger."},
    {unless = "told", who = "tansy", text = "Does she know about the leaves?"},
    {unless = "told", who = "you", text = "I hid it from her. She knows nothing, and that’s my doing, not yours."},
    {when = "asked", sound = "chime", text = "I set Jonah Fenn’s lantern on the shelf. It gave the moss back its green."},
    {when = "asked", who = "tansy", text = "That’s a Fenn lantern. Grandad wouldn’t have one in the house. He said he hadn’t the right."},
    {cast = ["", "", "tansy:sorry", ""], who = "tansy", text = "You’ll mend the lamp now, and it will never sleep again. That’s what you’re for, isn’t it?", choice = [
        {text = "“Come with me. We’ll tell them.”", set = "promised", go = "together"},
        {text = "“I was hired to keep it burning.”", go = "hired"}
    ]},
    {mark = "together", cast = ["", "", "tansy:glad", ""], who = "tansy", text = "All of them? At once? ... I’ll bring the box. It’s hard to argue with the box.", go = "leave"},
    {mark = "hired", who = "tansy", text = "Then mind the glass in the morning. It’ll want sweeping."},
    {mark = "leave", text = "Behind us the wind went once round the ring of trees and turned over every leaf, as though looking for the page it had been on."}
])
