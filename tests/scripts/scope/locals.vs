if true
    local x = 1
    y = 2
    print(x)            @@ expect: 1
end
print(x, y)             @@ expect: not\t2
x = "global"
function f(x)
    local x = "local"
    if true
        local x = "inner"
        print(x, x#1, x#3)      @@ expect: inner\tglobal\tinner
    end
    x = "assigned"
    print(x, x#1)               @@ expect: assigned\tglobal
end
f("parameter")
print(x)                        @@ expect: global
for i = 1, 2
    local seen
    print(seen)                 @@ expect: not
    seen = i
end                             @@ expect: not
@@ A block without locals of its own keeps what is written into its scope.
if true
    kept#3 = 1
    print(kept)                 @@ expect: 1
    while kept == 1
        deeper#3 = 2
        kept = 2
    end
    print(deeper)               @@ expect: not
end
function leaking()
    inside#3 = 3
    return inside
end
print(kept, leaking(), inside)  @@ expect: not\t3\tnot
x#1 = "written"
print(x)                        @@ expect: written
print(x#4)                      @@ error: Unknown token: x#4
