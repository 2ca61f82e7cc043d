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
x = true or (1 +                @@ error: Unexpected end of expression
