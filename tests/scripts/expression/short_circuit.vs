@@ The side that does not count is read for its syntax and not run.
function touch(value)
    print("touched", value)
    return value
end
print(false and touch(1))       @@ expect: false
print(7 or touch(1))            @@ expect: 7
print(touch(not) or touch(2))   @@ expect: touched\tnot
@@                              @@ expect: touched\t2
@@                              @@ expect: 2
print(1 or {a = touch(1), [touch(2)]: 3}["a"][1](2) ^ touch(3))    @@ expect: 1
print(false && (1 / 0), true || missing[1])                        @@ expect: false\ttrue
function varied(...)
    return false and ..., 1 or ...
end
print(varied(5, 6))             @@ expect: false\t1
for i, source in ipairs(["x = 1 or ...", "x = false and [...]", "x = true and (1 or f(...))"])
    ok, message = pcall(load(source))
    print(ok, message["find"]("Unknown token: ...", 1, true) != not)
end
@@ expect: false\ttrue
@@ expect: false\ttrue
@@ expect: false\ttrue
x = true or (1 +                @@ error: Unexpected end of expression
