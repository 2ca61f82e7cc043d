print(Vesper["getVar"]("nosuch"), Vesper["getVar"]())       @@ expect: not\tnot
Vesper["setVar"]("x", 1.9, VESPER_INT)
print(x)                                                    @@ expect: 1
Vesper["setVar"]("x", "text", VESPER_BOOL)
print(x)                                                    @@ expect: true
Vesper["setVar"]("x", 5, 9)
print(x)                                                    @@ expect: false
Vesper["setVar"]("x", 5, "notnumber")
print(x, Vesper["getVar"]("x"))                             @@ expect: 5\t5
print(Vesper["checksum"](""), Vesper["checksum"]("A"), Vesper["checksum"]("Kelmora"))   @@ expect: 0\t65\t27871943
Vesper["pushButton"](10, 0, 0, 10, 7)
print(Vesper["checkButton"](0, 5), Vesper["checkButton"](10, 5), Vesper["checkButton"](1, 5))   @@ expect: 0\t0\t7
Vesper["clearButtons"]()
print(Vesper["checkButton"](1, 5))                          @@ expect: 0
Vesper["runScript"]("y = 1 + 1")
print(y, add(1, 2), add(1, 2.5))                            @@ expect: 2\t3\t3.500000
print(dFeet(5, 6), dMetres(1, 0), calcHeight(6.8825))       @@ expect: 5.500000\t3.280840\t184.950027
print(VESPER_GAME_TARGET == VESPER_GAME_VISUAL_NOVEL, VESPER_OPTION_3, VESPER_RENDER_S13, VESPER_TMP9)  @@ expect: true\t33\t13\t0
print(VESPER_KEY_A, VESPER_MOUSE_X, VESPER_TOUCHBAR_4, VESPER_KEY_MINUS)    @@ expect: false\t-1\tfalse\tnot
print(pcall(add, 1))                                @@ expect: false\tadd requires exactly 2 arguments
print(pcall(Vesper["checkButton"], 1))              @@ expect: false\tVesper.checkButton: missing argument 2
print(pcall(Vesper["checksum"], 1))                 @@ expect: false\tVesper.checksum: text must be a string
print(pcall(Vesper["readFile"], "no/such"))         @@ expect: false\tVesper.readFile: failed to read file: no/such
Vesper["sleep"]("x")                                @@ error: Vesper.sleep: milliseconds must be numeric
