v = Vesper
print(v["round"](2.5), v["round"](3.14159, 2), v["clamp"](5, 10, 1), v["clamp"](5, 1, 3))     @@ expect: 2\t3.140000\t1\t3
print(v["between"](5, 10, 1), v["between"](0, 1, 10), v["middle"](100, 40))                  @@ expect: true\tfalse\t30.000000
print(v["round90"](45, 90), v["round90"](44, 90), v["findID"]([{identifier = "a"}, {identifier = "b"}], "b"), v["findID"]([], 1))     @@ expect: 90\t0\t2\t-1
print(v["round90"](16777217, 2), v["round90"](8388609, 1), v["round90"](-16777217, 2), v["round90"](100000000, 90))   @@ expect: 16777218\t8388609\t-16777216\t99999990
print(v["within"](5, 1, 5), v["within"](5, 1, 9))                                            @@ expect: true\tfalse\tfalse\tfalse
x, y = v["orbit"](1, 0, 0, 0, 90)
print(v["round"](x, 3) + 0.0, v["round"](y, 3))                                                  @@ expect: 0.000000\t1.000000
s = "aé€😀"
print(v["utf8lenSafe"](s), v["utf8lenSafe"](5), v["utf8lenSafe"]("a" + string["char"](255)))  @@ expect: 4\t0\t2
print(v["utf8subSafe"](s, -2), v["utf8subSafe"](s, 2, 3), v["utf8subSafe"](s, 3, 2) == "", v["utf8subSafe"](7) == "")    @@ expect: €😀\té€\ttrue\ttrue
print(v["utf8prefixSafe"](s, 3), v["utf8prefixSafe"](s, 99) == s)                            @@ expect: aé€\ttrue
print(v["hexDump"]("Kelmora\n!"))
@@ expect: 0000: 4b 65 6c 6d 6f 72 61 0a Kelmora.
@@ expect: 0008: 21                      !
@@ expect: 
print(v["checksum"]("abc") != 0, graphicsRan, layers, input["key"]["enter"], input["mouse"]["postion"][1])   @@ expect: true\ttrue\t5\tfalse\tfalse
print(cstrawberry, framecolour[2], typeOf(VESPER_FRAMEBUFFER), Plush["imageSize"](VESPER_FRAMEBUFFER))       @@ expect: [255, 90, 120, 255]\t90\tuserdata\t960\t544
print(math["random"](1000), math["random"](1000))       @@ expect: 924\t999
chunk = vesperLoadChunkOrError("return 3", "three")
print(chunk())                                          @@ expect: 3
VESPER_PROCESSOR_NAME = "P"
VESPER_OS_PLATFORM = "O"
VESPER_OS_VERSION = 1
debugger = true
Vesper["logPush"]("one")
Vesper["logPush"]("two")
Metal["forceUpdate"]()
@@ expect: LOG: P:O:1
@@ expect: 1: one
@@ expect: 2: two
@@ expect: 
print(debuglog == "")                                   @@ expect: true
error("the game's own end")                             @@ error: the game's own end
