print(_VERSION, VESPERLUA_VERSION)   -- expect: VesperLua 0.3\tVesperLua 0.3
print(tostring(nil), tostring(1.0), tostring("x"), tostring(2 / 3)) -- expect: nil\t1\tx\t0.66666666666667
print(tonumber("10"), tonumber(" 0x1F "), tonumber("1e3"), tonumber("-.5"), tonumber("5."))
-- expect: 10\t31\t1000\t-0.5\t5
print(tonumber("12a"), tonumber(""), tonumber("inf"), tonumber("nan"), tonumber(nil), tonumber({}))
-- expect: nil\tnil\tnil\tnil\tnil\tnil
print(tonumber("ff", 16), tonumber("-101", 2), tonumber("9", 8), tonumber("zz", 36)) -- expect: 255\t-5\tnil\t1295
print(type(nil), type(1), type("s"), type({}), type(print), type(true), type(pairs({})), type(io.stdout))
-- expect: nil\tnumber\tstring\ttable\tfunction\tboolean\titerator\tuserdata
print(rawget({a = 1}, "a"), rawset({}, "k", 2).k)      -- expect: 1\t2
print(tostring({}):match("^table: 0x%x+$") ~= nil, tostring(print):startswith("function: ")) -- expect: true\ttrue
print(math.floor(2.7), math.ceil(2.1), math.floor(-2.5), math.abs(-3), math.abs(-0.5)) -- expect: 2\t3\t-3\t3\t0.5
print(math.min(3, 1.5, 2), math.max(1, 2, 2.5), math.clamp(15, 0, 10), math.clamp(-1, 0, 10)) -- expect: 1.5\t2.5\t10\t0
print(math.pow(2, 10), math.pow(2, 0.5), math.pow(3, 39), math.pow(2, -1)) -- expect: 1024\t1.4142135623731\t4052555153018976267\t0.5
print(math.sqrt(16), math.exp(0), math.log(8, 2), math.log(100, 10), math.log(1)) -- expect: 4\t1\t3\t2\t0
print(math.sin(0), math.cos(0), math.rad(180) == math.pi, math.deg(math.pi))      -- expect: 0\t1\ttrue\t180
math.randomseed(7)
local first, second = math.random(100), math.random(5, 6)
math.randomseed(7)
print(first == math.random(100), second == math.random(5, 6), second >= 5 and second <= 6) -- expect: true\ttrue\ttrue
local fraction = math.random()
print(fraction >= 0 and fraction < 1, math.random(3, 3)) -- expect: true\t3
print(type(time()), type(time_ms()), time_ms() <= time_ms(), type(os.clock()), os.time() - time() <= 1)
-- expect: number\tnumber\ttrue\tnumber\ttrue
print(os.difftime(10, 4), pcall(os.difftime, 1)) -- expect: 6\tfalse\tbasic_library.lua:25: os.difftime expects exactly 2 arguments
io.write("no ", 1, " line feed\n")   -- expect: no 1 line feed
io.stdout:write("chained "):write("calls\n") -- expect: chained calls
print(io.open("/no/such/file"))      -- expect: nil\tfailed to open file: /no/such/file
print(pcall(math.random, 2, 1))      -- expect: false\tbasic_library.lua:29: math.random: the interval is empty
print(pcall(next, {}, "absent"))     -- expect: false\tbasic_library.lua:30: next: the key is not in the table
print(pcall(function() return io.stdout[1] end)) -- expect: false\tbasic_library.lua:31: userdata fields must be strings
print(pcall(function() return io.stdout.read(io.stdout) end)) -- expect: false\tbasic_library.lua:32: native object handle is empty
math.floor("1")                      -- error: math.floor expects a number as argument 1
