function grade(n)
    if n > 10
        return "high"
    elseif n > 5
        if n == 7
            return "seven"
        end
        return "middle"
    else
        return "low"
    end
    return "never"
end
print(grade(11), grade(7), grade(6), grade(1))  @@ expect: high\tseven\tmiddle\tlow
if false; print("no"); end
if 0
    print("zero is true")   @@ expect: zero is true
end
if true print("x")          @@ error: Unexpected token after if condition
end
