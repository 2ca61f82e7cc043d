@@ Binding strength and direction of the operators.
print(1 + 2 * 3)            @@ expect: 7
print(2 ^ 3 ^ 2)            @@ expect: 512
print(-2 ^ 2)               @@ expect: -4
print(2 * -3)               @@ expect: -6
print(10 - 4 - 3)           @@ expect: 3
print(1 + 2 == 3)           @@ expect: true
print(not 1 == 2)           @@ expect: false
print(1 < 2 and 2 < 3)      @@ expect: true
print(not or 5)             @@ expect: 5
print("a" + 1 + 2)          @@ expect: a12
print(1 + 2 + "a")          @@ expect: 3a
x = 5
print(x<-1)                 @@ expect: 1
