@@ Endless recursion, deep nesting and self-holding containers are script errors.
function forever(n)
    return 1 + forever(n + 1)
end
ok, why = pcall(forever, 1)
print(ok, why)      @@ expect: false\tStack overflow: calls or expressions are nested too deeply
ok, why = pcall(load("return " + string["rep"]("(", 100000) + "1" + string["rep"](")", 100000)))
print(ok, why)      @@ expect: false\tStack overflow: calls or expressions are nested too deeply
ok, why = pcall(load("return " + string["rep"]("not ", 100000) + "1"))
print(ok, why)      @@ expect: false\tStack overflow: calls or expressions are nested too deeply
source = string["rep"]("if true\n", 50000) + "x = 1\n" + string["rep"]("end\n", 50000)
ok, why = pcall(load, source)
print(ok, why)      @@ expect: false\tStack overflow: calls or expressions are nested too deeply
t = {}
t["self"] = t
print(pcall(toString, t))               @@ expect: false\ttoString: a container holds itself
t["self"] = not
deep = []
for i = 1, 100000
    deep = [deep]
end
print(pcall(toString, deep))            @@ expect: false\ttoString: containers are nested too deeply
wide = ["x"]
for i = 1, 40
    wide = [wide, wide]
end
print(pcall(toString, wide))            @@ expect: false\ttoString: the text is too large
deep = not
table["sort"]([3, 2, 1], forever)       @@ error: Stack overflow: calls or expressions are nested too deeply
