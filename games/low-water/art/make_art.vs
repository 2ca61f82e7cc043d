@@ Paints every picture of the game, the same bytes each time:
@@     vesper run games/low-water/art/make_art.vs [FOLDER]

folder = arguments[1] or "games/low-water/Resources/package/textures"

runFile("paint.vs")
runFile("grounds.vs")
runFile("walls.vs")
runFile("things.vs")

paintGrounds()
paintWalls()
paintThings()
