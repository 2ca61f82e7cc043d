d = Vesper["jsonDecode"]
function failure(text)
    ok, why = pcall(Vesper["jsonDecode"], text)
    return string["gsub"](why, "Vesper%.jsonDecode: ", "")
end
t = d("{\"a\": [1, -2.5, 1e2, true, false, null], \"s\": \"q\\\"\\\\\\/\\n\\u00e9\\u20AC\", \"o\": {}}")
print(t["a"][1], t["a"][2], t["a"][3], t["a"][4], t["a"][5], t["a"][6])  @@ expect: 1\t-2.500000\t100.000000\ttrue\tfalse\tnot
print(t["s"] == "q\"\\/\né€", t["o"], d(" [ ] "))                          @@ expect: true\t{}\t{}
print(failure("[1]x"))              @@ expect: unexpected trailing data at position 4
print(failure("3"))                 @@ expect: root value must be object or array at position 2
print(failure("[1 2]"))             @@ expect: expected , or ] in array at position 4
print(failure("{\"a\" 1}"))         @@ expect: expected : after object key at position 6
print(failure("{\"a\":1;}"))        @@ expect: expected , or } in object at position 7
print(failure("{a:1}"))             @@ expect: expected string at position 2
print(failure("[\"\\x\"]"))         @@ expect: invalid escape sequence at position 4
print(failure("[\"\\u12g4\"]"))     @@ expect: invalid unicode escape at position 4
print(failure("[\"open"))           @@ expect: unterminated string at position 7
print(failure("[-]"))               @@ expect: invalid number at position 2
print(failure("[tru]"))             @@ expect: unexpected token at position 2
print(failure(""))                  @@ expect: unexpected token at position 1
print(pcall(d, 5))                  @@ expect: false\tVesper.jsonDecode expects a JSON string
print(Vesper["jsonEncode"]({[1]: 2, k = {x = true}}))       @@ expect: { [1] = 2,["k"] = { ["x"] = true,} ,} 
back = load("return " + Vesper["jsonEncode"]({[1]: 2, k = {x = true}}))
print(back())                       @@ expect: {1: 2, k: {x: true}}
print(pcall(d, string["rep"]("[", 100000)))     @@ expect: false\tStack overflow: calls or expressions are nested too deeply
