@@ What an error leaves behind in scopes and levels is undone.
depth = "global"
function fails(depth)
    local a = 1
    for i = 1, 3
        if i == 2
            native inner = 1
            return 1 \ 0
        end
    end
end
for n = 1, 3
    pcall(fails, "param")
end
print(depth, a, i, inner)       @@ expect: global\tnot\tnot\tnot
