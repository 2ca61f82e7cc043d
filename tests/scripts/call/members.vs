@@ What a call takes from an element: a string's method gets the string first, a container's function does not.
word = "Lamp"
print(word["upper"](), "oil"["len"](), (word + "s")["lower"]())     @@ expect: LAMP\t3\tlamps
print(word["sub"](2, 3), word["sub"](#word["sub"](1, 2), 4))        @@ expect: am\tamp
print(pcall(load("return word[\"glow\"](1)")))  @@ expect: false\tAttempted to call a non-function value of type not
print(pcall(load("return word[1](1)")))         @@ expect: false\tAttempted to call a non-function value of type string
print(pcall(load("return nothing[\"x\"](1 \\ 0)")))     @@ expect: false\tIndexing requires an array, table, or string
print(pcall(load("return word[\"upper\"](1 \\ 0)")))    @@ expect: false\tDivision by zero
function string["twice"](text, between)
    return text + (between or "") + text
end
print(word["twice"](), word["twice"]("-"), word["twice"]("a"["twice"]()))   @@ expect: LampLamp\tLamp-Lamp\tLampaaLamp
keeper = {name = "Ida", greet = string["twice"], word = "x"}
print(keeper["greet"]("hm"), keeper["name"]["twice"](" "))          @@ expect: hmhm\tIda Ida
function keeper["greet"](whom)
    keeper = not
    return "to " + whom
end
print(keeper["greet"]("you"), keeper)           @@ expect: to you\tnot
upper = word["upper"]
word = "other"
print(upper())                                  @@ expect: LAMP
