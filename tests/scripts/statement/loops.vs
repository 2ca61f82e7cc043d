for i = 1, 3
    i2 = i
    i = 100
end
print(i2, i)                    @@ expect: 3\tnot
out = ""
for i = 5, 1, -2
    out += i
end
for i = 0.5, 2.5
    out += ":" + i
end
for i = 1, 0
    out += "never"
end
print(out)                      @@ expect: 531:0:1:2
i = 0
while true
    i += 1
    if i == 3
        break
    end
    for j = 1, 10
        if j == 2
            break
        end
    end
end
print(i, j)                     @@ expect: 3\tnot
repeat
    i -= 1
until i == 0
print(i)                        @@ expect: 0
function find(t, wanted)
    for k, v in pairs(t)
        while true
            if v == wanted
                return k
            end
            break
        end
    end
end
print(find({a = 1, b = 2}, 2))  @@ expect: b
for i = 2147483646, 2147483647
    if i < 0
        break
    end
    out = i
end
print(out)                      @@ expect: 2147483647
done = false
n = 0
repeat
    n += 1
    done = n == 3
until done
repeat
    n += 1
    if n == 5
        break
    end
until n == 9
function leave()
    repeat
        n += 1
        if n == 8
            return n, "left"
        end
    until n == 9
end
print(n, leave())               @@ expect: 5\t8\tleft
for i = 1, 3, 0                 @@ error: for loop step must not be 0
end
