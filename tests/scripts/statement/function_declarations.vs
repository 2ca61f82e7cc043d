lib = {}
function lib["inner"]["f"](a, b)
    return a + b
end
print(lib["inner"]["f"](1, 2))      @@ expect: 3
function variadic(first, ...)
    rest = ...
    return first, select(2, ...)
end
a, b = variadic(1, 2, 3)
print(a, b, typeOf(rest))           @@ expect: 1\t3\ttable
function twice(x, x)
    return x
end
print(twice(1, 2))                  @@ expect: 1
print(pcall(variadic))              @@ expect: true\tnot\tnot
local function hidden()
    return "hidden"
end
print(hidden())                     @@ expect: hidden
function marked(m#1, b#0)
    for c#3 in [m + b]
        return c, m#1
    end
end
print(marked(1, 2))                 @@ expect: 3\tnot
for each, fault in pairs([["5()", "Expected function target"], ["(a)", "Expected function target"], ["f a", "Expected '(' after function target"]])
    ok, message = pcall(load("function " + fault[1] + "\nend"))
    print(message["find"](fault[2], 1, true) != not)
end
@@ expect: true
@@ expect: true
@@ expect: true
function f(a b)                     @@ error: Expected ',' or ')' after function parameter
end
