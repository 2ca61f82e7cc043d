@@ The title, the credits, and the languages.

Novel["languages"]([["en", "English"], ["de", "Deutsch"]])

gameCards = {
    name = "Eleven Minutes Dark",
    place = "night",
    music = "light",
    title = [
        {text = "Eleven Minutes", font = "title"},
        {text = "Dark", font = "title", ink = "gold"},
        {text = "a story for one evening", font = "tell", ink = "dim"}
    ],
    creditsPlace = "dusk",
    credits = [
        {text = "Eleven Minutes Dark", font = "head", ink = "gold", y = 70},
        {text = "Story, pictures and sounds were made for this game", y = 150},
        {text = "and are painted and played by the scripts beside it.", y = 182},
        {text = "Set in Gentium Book Plus and in Cardo, the runes", y = 240},
        {text = "in FreeMono: free fonts, all three.", y = 272},
        {text = "Redwings cross the sea by night, every October.", font = "tell", ink = "gold", y = 330},
        {text = "Lights that are put out for them save a great many.", font = "tell", ink = "gold", y = 362}
    ]
}
