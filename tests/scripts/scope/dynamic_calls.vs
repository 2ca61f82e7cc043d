@@ A callee sees the parameters and loop variables of its callers, but not their locals.
function inner()
    return p, l
end
function outer(p)
    local l = "local"
    return inner()
end
print(pcall(outer, "param"))    @@ expect: true\tparam\tnot
function reader()
    return i
end
for i = 7, 7
    print(reader())             @@ expect: 7
end
print(reader())                 @@ expect: not
function change(p)
    p = "changed"
    return p
end
p = "global"
print(change("x"), p)           @@ expect: changed\tglobal
function setter()
    p = "by callee"
end
function holder(p)
    setter()
    return p
end
print(holder("own"), p)         @@ expect: by callee\tglobal
