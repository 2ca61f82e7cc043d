function f()
    break
end
print(pcall(f))     @@ expect: false\tbreak used outside a loop
break               @@ error: break used outside a loop
