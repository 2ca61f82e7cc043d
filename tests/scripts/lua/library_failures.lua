-- Each library function with too few, too many and wrong arguments.
local function say(ok, problem)
    print(ok and "fine" or (tostring(problem):gsub("^[^:]*:%d+: ", "")))
end
say(pcall(tostring)) -- expect: tostring expects exactly 1 argument
say(pcall(tonumber, "1", 1)) -- expect: tonumber: base is out of range
say(pcall(tonumber, "1", 37)) -- expect: tonumber: base is out of range
say(pcall(tonumber, 5, 10)) -- expect: tonumber expects a string as argument 1
say(pcall(assert)) -- expect: assert expects at least 1 argument
say(pcall(assert, false)) -- expect: assertion failed!
say(pcall(assert, nil, "said so")) -- expect: said so
say(pcall(pairs, nil)) -- expect: pairs expects a table as argument 1
say(pcall(pairs, {}, 1)) -- expect: pairs expects exactly 1 argument
say(pcall(ipairs, "x")) -- expect: ipairs expects a table as argument 1
say(pcall(next, {}, {})) -- expect: next: the key is not in the table
say(pcall(select)) -- expect: select expects at least 1 argument
say(pcall(select, 0)) -- expect: select: the index is out of range
say(pcall(select, "x")) -- expect: select expects an integer as argument 1
say(pcall(rawget, {})) -- expect: rawget expects exactly 2 arguments
say(pcall(rawget, 1, 2)) -- expect: rawget expects a table as argument 1
say(pcall(rawset, {}, {}, 1)) -- expect: table index must be a number, string, or boolean
say(pcall(type)) -- expect: type expects exactly 1 argument
say(pcall(load, 5)) -- expect: load expects a string as argument 1
say(pcall(pcall)) -- expect: pcall expects at least 1 argument
say(pcall(string.len)) -- expect: string.len expects exactly 1 argument
say(pcall(string.len, {})) -- expect: string.len expects a string as argument 1
say(pcall(string.upper, 1)) -- expect: string.upper expects a string as argument 1
say(pcall(string.sub, "x")) -- expect: string.sub expects between 2 and 3 arguments
say(pcall(string.sub, "x", "1")) -- expect: string.sub expects an integer as argument 2
say(pcall(string.sub, "x", 1.5)) -- expect: string.sub expects an integer as argument 2
say(pcall(string.find, "x")) -- expect: string.find expects between 2 and 4 arguments
say(pcall(string.find, "x", 1)) -- expect: string.find expects a string as argument 2
say(pcall(string.match, "x", "x", "y")) -- expect: string.match expects an integer as argument 3
say(pcall(string.gmatch, "x")) -- expect: string.gmatch expects exactly 2 arguments
say(pcall(string.gsub, "x", "x")) -- expect: string.gsub expects between 3 and 4 arguments
say(pcall(string.gsub, "x", "x", true)) -- expect: string.gsub expects a string, table or function as argument 3
say(pcall(string.gsub, "x", "x", "%")) -- expect: string.gsub: invalid use of '%' in replacement string
say(pcall(string.gsub, "x", "x", "%a")) -- expect: string.gsub: invalid use of '%' in replacement string
say(pcall(string.gsub, "x", "x", function() return {} end)) -- expect: string.gsub: the replacement is a table value
say(pcall(string.gsub, "x", "x", "y", "z")) -- expect: string.gsub expects an integer as argument 4
say(pcall(string.format)) -- expect: string.format expects at least 1 argument
say(pcall(string.format, "%")) -- expect: string.format: incomplete format specifier
say(pcall(string.format, "%s")) -- expect: string.format: missing argument for format specifier %s
say(pcall(string.format, "%d", "1")) -- expect: string.format expects an integer as argument 2
say(pcall(string.format, "%c", {})) -- expect: string.format expects an integer as argument 2
say(pcall(string.byte, "x", "y")) -- expect: string.byte expects an integer as argument 2
say(pcall(string.char, "x")) -- expect: string.char expects an integer as argument 1
say(pcall(string.char, 1, 2, -1)) -- expect: string.char expects a byte as argument 3
say(pcall(string.rep, "x")) -- expect: string.rep expects between 2 and 3 arguments
say(pcall(string.rep, "x", 1, 2)) -- expect: string.rep expects a string as argument 3
say(pcall(string.reverse)) -- expect: string.reverse expects exactly 1 argument
say(pcall(string.strip, 5)) -- expect: string.strip expects a string as argument 1
say(pcall(string.contains, "x")) -- expect: string.contains expects exactly 2 arguments
say(pcall(string.startswith, "x", 1)) -- expect: string.startswith expects a string as argument 2
say(pcall(string.endswith, 1, "x")) -- expect: string.endswith expects a string as argument 1
say(pcall(string.split, "x", 1)) -- expect: string.split expects a string as argument 2
say(pcall(string.pack)) -- expect: string.pack expects at least 1 argument
say(pcall(string.pack, "y", 1)) -- expect: string.pack: invalid format option 'y'
say(pcall(string.pack, "i4", "x")) -- expect: string.pack expects an integer as argument 2
say(pcall(string.pack, "B", -1)) -- expect: string.pack: an integer does not fit its size
say(pcall(string.pack, "z", "a\0b")) -- expect: string.pack: a text holds a zero byte
say(pcall(string.pack, "s1", ("x"):rep(256))) -- expect: string.pack: a text is longer than its count can tell
say(pcall(string.pack, "c")) -- expect: string.pack: a length is missing behind 'c'
say(pcall(string.pack, "c1", "xy")) -- expect: string.pack: a text is longer than its field
say(pcall(string.unpack, "i4")) -- expect: string.unpack expects between 2 and 3 arguments
say(pcall(string.unpack, "i4", "abcd", 9)) -- expect: string.unpack: the position is out of range
say(pcall(string.unpack, "z", "abc")) -- expect: string.unpack: the text is too short
say(pcall(string.unpack, "s1", "\9")) -- expect: string.unpack: the text is too short
say(pcall(table.insert, {})) -- expect: table.insert expects between 2 and 3 arguments
say(pcall(table.insert, {}, 3, 1)) -- expect: table.insert: the position is out of range
say(pcall(table.insert, {}, "x", 1)) -- expect: table.insert expects an integer as argument 2
say(pcall(table.remove, {1}, 5)) -- expect: table.remove: the position is out of range
say(pcall(table.remove, 5)) -- expect: table.remove expects a table as argument 1
say(pcall(table.concat, {1, true})) -- expect: table.concat: item 2 is not a string or number
say(pcall(table.concat, {}, 5)) -- expect: table.concat expects a string as argument 2
say(pcall(table.concat, {1}, "", 1, 2)) -- expect: table.concat: item 2 is not a string or number
say(pcall(table.sort, {1, {}, 2})) -- expect: ordered comparisons require matching numbers or strings
say(pcall(table.sort, {2, 1}, 5)) -- expect: table.sort expects a function as argument 2
say(pcall(table.unpack, {}, "x")) -- expect: table.unpack expects an integer as argument 2
say(pcall(table.keys)) -- expect: table.keys expects exactly 1 argument
say(pcall(table.values, 5)) -- expect: table.values expects a table as argument 1
say(pcall(table.clone, "x")) -- expect: table.clone expects a table as argument 1
say(pcall(table.clear)) -- expect: table.clear expects exactly 1 argument
say(pcall(table.extend, {})) -- expect: table.extend expects exactly 2 arguments
say(pcall(table.extend, {}, "x")) -- expect: table.extend expects a table as argument 2
say(pcall(math.min)) -- expect: math.min expects at least 1 argument
say(pcall(math.max, 1, "2")) -- expect: math.max expects a number as argument 2
say(pcall(math.floor, "1")) -- expect: math.floor expects a number as argument 1
say(pcall(math.ceil)) -- expect: math.ceil expects exactly 1 argument
say(pcall(math.abs, nil)) -- expect: math.abs expects a number as argument 1
say(pcall(math.sin, {})) -- expect: math.sin expects a number as argument 1
say(pcall(math.pow, 2)) -- expect: math.pow expects exactly 2 arguments
say(pcall(math.clamp, 1, 3, 2)) -- expect: math.clamp: the lower bound is above the upper one
say(pcall(math.clamp, 1, 2)) -- expect: math.clamp expects exactly 3 arguments
say(pcall(math.log, "x")) -- expect: math.log expects a number as argument 1
say(pcall(math.random, 1, 2, 3)) -- expect: math.random expects between 0 and 2 arguments
say(pcall(math.random, 0)) -- expect: math.random: the interval is empty
say(pcall(math.random, 1.5)) -- expect: math.random expects an integer as argument 1
say(pcall(math.randomseed)) -- expect: math.randomseed expects exactly 1 argument
say(pcall(math.sqrt, "4")) -- expect: math.sqrt expects a number as argument 1
say(pcall(io.open)) -- expect: io.open expects between 1 and 2 arguments
say(pcall(io.open, 5)) -- expect: io.open expects a string as argument 1
say(pcall(io.write, {})) -- expect: io.write expects a string or number as argument 1
say(pcall(io.stdout.write, 5)) -- expect: file.write expects a file as argument 1
say(pcall(io.stdout.seek, io.stdout)) -- expect: native object handle is empty
say(pcall(io.stdout.read)) -- expect: file.read expects at least 1 argument
say(pcall(io.stdout.close, io.stdout)) -- expect: native object handle is empty
say(pcall(os.clock, 1)) -- expect: os.clock expects exactly 0 arguments
say(pcall(os.time, 1)) -- expect: os.time expects exactly 0 arguments
say(pcall(os.difftime, 1, "2")) -- expect: os.difftime expects a number as argument 2
say(pcall(os.execute, {})) -- expect: os.execute expects a string as argument 1
say(pcall(os.exit, "x")) -- expect: os.exit expects an integer as argument 1
