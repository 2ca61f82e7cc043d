@@ Volumes, groups and fades.
a = Audio
tone = a["form"](441, 1000, "sine", "both")
print(a["getVolume"](tone))                                     @@ expect: 1.000000
print(a["setVolume"](tone, 0.25), a["getVolume"](tone))         @@ expect: true\t0.250000
print(a["setVolume"](tone, 4), a["getVolume"](tone))            @@ expect: true\t1.000000
print(a["fade"](tone, 0, 2), a["getVolume"](tone))              @@ expect: true\t1.000000
print(a["setGroup"](tone, "music"), a["setGroupVolume"]("music", 0.5), a["setMasterVolume"](0.5))   @@ expect: true\tnot\tnot
print(a["play"](tone, true), a["setVolume"](tone, 0), a["getVolume"](tone), a["pause"](tone))       @@ expect: true\ttrue\t0.000000\t0
print(a["setVolume"](not, 1), a["getVolume"](not), a["fade"](not, 1, 1), a["setGroup"](not, "sound"))   @@ expect: false\t0.000000\tfalse\tfalse
print(pcall(a["setVolume"], tone))                              @@ expect: false\tAudio.setVolume: missing argument 2
print(pcall(a["setVolume"], tone, "x"))                         @@ expect: false\tAudio.setVolume: volume must be numeric
print(pcall(a["fade"], tone, 1))                                @@ expect: false\tAudio.fade: missing argument 3
print(pcall(a["fade"], tone, 1, "x"))                           @@ expect: false\tAudio.fade: seconds must be numeric
print(pcall(a["setGroup"], tone, "noise"))                      @@ expect: false\tAudio.setGroup: group must be music or sound
print(pcall(a["setGroupVolume"], "sound", not))                 @@ expect: false\tAudio.setGroupVolume: volume must be numeric
a["setMasterVolume"]()                                          @@ error: Audio.setMasterVolume: missing argument 1
