runFile(Vesper["getPath"]() + "../Libraries/novel/novel.vs")

bookFont = "GentiumBookPlus-Regular.ttf"
Novel["look"]({fonts = {words = [bookFont, 22], tell = [bookFont, 22], name = [bookFont, 23], item = [bookFont, 22], small = [bookFont, 17], tiny = [bookFont, 14], head = [bookFont, 38], title = [bookFont, 62], runes = [bookFont, 46]}})
