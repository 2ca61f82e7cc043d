@@ A tenth of a second of stereo at 1000 frames a second, played by an output whose time stands still.
path = "/tmp/kelmora_audio_script.wav"
char = string["char"]
zero = char(0)
header = "RIFF" + char(180, 1, 0, 0) + "WAVEfmt " + char(16, 0, 0, 0, 1, 0, 2, 0, 232, 3, 0, 0, 160, 15, 0, 0, 4, 0, 16, 0)
file = io["open"](path, "w")
file["write"](header + "data" + char(144, 1, 0, 0) + string["rep"]("abcd", 100))
file["close"]()

a = Audio
track, opened = a["open"](path)
print(track == not, opened)                         @@ expect: false\ttrue
print(a["pause"](track))                            @@ expect: 0
print(a["play"](track, not), a["pause"](track))     @@ expect: true\t0
print(a["play"](track, true, 42), a["pause"](track), a["pause"](track))     @@ expect: true\t42\t42
print(a["play"](track, 1, 17.9), a["clear"](), a["pause"](track))   @@ expect: true\tnot\t17
print(a["play"](track, false, -5), a["pause"](track))               @@ expect: true\t0
copy = "/tmp/kelmora_audio_copy.wav"
print(a["save"](track, copy), a["save"](track, "/no/such/folder/x.wav"))    @@ expect: true\tfalse
other, opened = a["open"](copy)
print(opened, a["play"](other, true, 7), a["pause"](other), a["free"](other))  @@ expect: true\ttrue\t7\tnot
os["remove"](path)
os["remove"](copy)
print(a["play"](track, true, 3), a["free"](track), a["free"](track), a["free"](not))    @@ expect: true\tnot\tnot\tnot
print(a["play"](track, true), a["pause"](track), a["play"](not, true), a["save"](not, copy))    @@ expect: false\t0\tfalse\tfalse
print(a["open"](path))                              @@ expect: not\tfalse
print(a["open"]("/"))                               @@ expect: not\tfalse
print(pcall(a["open"]))                             @@ expect: false\tAudio.open: missing argument 1
print(pcall(a["open"], 1))                          @@ expect: false\tAudio.open: path must be a string
print(pcall(a["play"], not))                        @@ expect: false\tAudio.play: missing argument 2
print(pcall(a["play"], 1, true))                    @@ expect: false\tAudio.play: track must be a pointer
print(pcall(a["play"], not, true, "x"))             @@ expect: false\tAudio.play: offset must be numeric
print(pcall(a["pause"]))                            @@ expect: false\tAudio.pause: missing argument 1
print(pcall(a["save"], not, 1))                     @@ expect: false\tAudio.save: path must be a string
a["free"]("x")                                      @@ error: Audio.free: track must be a pointer
