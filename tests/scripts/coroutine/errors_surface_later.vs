decay function fails()
    x = 1 \ 0
end
fails()
print("a")      @@ error: Division by zero
print("b")
