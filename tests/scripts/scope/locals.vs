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
x#1 = "written"
print(x)                        @@ expect: written
print(x#4)                      @@ error: Unknown token: x#4
