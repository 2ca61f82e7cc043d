@@ The library, and how this game looks: its fonts, and the sounds of its menus.

runFile(Vesper["getPath"]() + "../Libraries/novel/novel.vs")

Novel["look"]({
    fonts = {
        words = ["GentiumBookPlus-Regular.ttf", 22], tell = ["GentiumBookPlus-Italic.ttf", 22], name = ["Cardo104s.ttf", 23],
        item = ["Cardo104s.ttf", 24], small = ["GentiumBookPlus-Regular.ttf", 17], tiny = ["GentiumBookPlus-Regular.ttf", 14],
        head = ["Cardo104s.ttf", 38], title = ["Cardo104s.ttf", 62], runes = ["FreeMono.ttf", 46]
    },
    plain = "FreeSans.ttf",
    noFonts = "ui/no-fonts.png",
    sounds = {tick = "tick", move = "move", choose = "choose"}
})
