print(typeOf(not), typeOf(1), typeOf(1.5), typeOf("s"), typeOf($1), typeOf(true), typeOf([]), typeOf({}), typeOf(print))
@@ expect: not\tnumber\tnumber\tstring\tuserdata\tboolean\ttable\ttable\tfunction
print(toNumber("42"), toNumber(" 4.5 "), toNumber("x"), toNumber("z", 36), toNumber("10", 1), toNumber("ff", 16))
@@ expect: 42\t4.500000\tnot\t35\tnot\t255
print(toString(1.5), len("abc"), select(2, "a", "b", "c"))      @@ expect: 1.500000\t3\tb\tc
print(VESPER_VERSION, VESPER_BYTECODE_VERSION, VESPER_RELEASE)  @@ expect: 0.600000\t60\tBeta
math["randomseed"](1)
a = random(1000000)
math["randomseed"](1)
print(a == math["random"](1000000), random(3, 3))               @@ expect: true\t3
x = random()
print(x >= 0 and x < 1)                                         @@ expect: true
print(pcall(random, 0))     @@ expect: false\trandom function requires a positive maximum value
print(pcall(random, 2, 1))  @@ expect: false\trandom function requires min <= max
print(pcall(random, "x"))   @@ expect: false\trandom function with one argument requires an integer
print(pcall(select, 1))     @@ expect: false\tselect(index, values...) requires at least 2 arguments
print(pcall(select, 0, 1))  @@ expect: false\tselect index must be >= 1
chunk = load("return 6 * 7")
print(chunk(), pcall(chunk, 1))     @@ expect: 42\tfalse\tLoaded script chunks do not accept call arguments
print(pcall(load, 5))       @@ expect: false\tload(scriptText) requires a script string
print(pcall(loadFile, "no/such.vs"))        @@ expect: false\tFailed to open script file: no/such.vs
print(pcall(load("if x")))  @@ error: Missing 'end' for if block
