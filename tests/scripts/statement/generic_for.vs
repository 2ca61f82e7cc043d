for x in {1, 2}
    print(x)                @@ expect: 1
end                         @@ expect: 2
for a, b in {{1, 2}, {3}, 4}
    print(a, b)             @@ expect: 1\t2
end                         @@ expect: 3\tnot
@@                          @@ expect: 4\tnot
t = {}
t["10"] = "c"
t[2] = "b"
t[1] = "a"
t["x1.5"] = "e"
t[1.5] = "d"
for k, v in pairs(t)
    print(k, v, typeOf(k))  @@ expect: 1\ta\tnumber
end                         @@ expect: 1.500000\td\tnumber
@@                          @@ expect: 10\tc\tnumber
@@                          @@ expect: 2\tb\tnumber
@@                          @@ expect: x1.5\te\tstring
print(#t)                   @@ expect: 2
for i, v, extra in ipairs(t)
    print(i, v, extra)      @@ expect: 1\ta\tnot
end                         @@ expect: 2\tb\tnot
for k in pairs({z = 26})
    print(k)                @@ expect: [z, 26]
end
for k, v in pairs(t)        @@ keys added on the way are not visited, erased ones are skipped
    t["new" + k] = 1
    erase(t, "x1.5")
    last = k
end
print(last)                 @@ expect: 2
function all(...)
    local sum = 0
    for v in ...
        sum += v
    end
    return sum
end
print(all(1, 2, 3))         @@ expect: 6
for v in 5                  @@ error: generic for loops expect an array iterator
end
