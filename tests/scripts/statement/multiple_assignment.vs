function two()
    return 1, 2
end
function none()
end
x, y, z = two()
print(x, y, z)              @@ expect: 1\t2\tnot
x = two()
print(x)                    @@ expect: 1
x = (two)()
print(x)                    @@ expect: 1
x = 8, 9
print(x)                    @@ expect: 8
x, y = y, x
print(x, y)                 @@ expect: 2\t8
a = {}
a[1][2], b = "deep", "b"
print(a, b)                 @@ expect: {1: [not, deep]}\tb
local p, q
print(p, q)                 @@ expect: not\tnot
i = 1
i, a[i] = i + 1, 20
print(i, a)                 @@ expect: 2\t{1: [not, deep], 2: 20}
p = "global"
function within()
    local p, q = two()
    p, r = two()
    return p, q, r
end
print(within())             @@ expect: 1\t2\t2
print(p, q, r)              @@ expect: global\tnot\t2
x = 1 2                     @@ error: Unexpected token in assignment expression
