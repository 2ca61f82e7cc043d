@@ Runs before the story: the library for novels, and how this game looks.

runFile(Vesper["getPath"]() + "../Libraries/novel/novel.vs")

@@ Fonts lie in Resources/package/fonts. Other fonts and sizes, inks and panels: see docs/novels.md.
Novel["look"]({inks = {paper = [240, 234, 220, 255], gold = [255, 206, 130, 255]}})
