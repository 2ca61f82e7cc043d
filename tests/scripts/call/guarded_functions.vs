function sign(n)
    if n < 0
        return "below"
    end
    if n == 0
        return name
    end
    return "above"
end
name = "zero"
print(sign(-1), sign(0), sign(3))       @@ expect: below\tzero\tabove
native here = "depth 0"
if true
    native here = "depth 1"
end
function depth(n)
    if n < 0
        return here
    end
    return here
end
print(depth(-1), depth(1), here)        @@ expect: depth 1\tdepth 0\tdepth 0
function fails(n)
    if n > 2
        return error("too many: " + n) + 1
    end
    return fails(n + 1)
end
print(pcall(fails, 1))                  @@ expect: false\ttoo many: 3
print(depth(1), pcall(sign, [1]))       @@ expect: depth 0\tfalse\tCannot compare array with int
function pair(n)
    if n < 1
        return 1, 2
    end
    return sign(n), n
end
a, b = pair(0)
c, d = pair(4)
print(a, b, c, d)                       @@ expect: 1\t2\tabove\t4
