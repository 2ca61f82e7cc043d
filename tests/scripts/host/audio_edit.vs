@@ Tones, mixing, cutting and pace; and the search for a frequency.
a = Audio
path = "/tmp/kelmora_audio_edit.wav"

function size(track)
    a["save"](track, path)
    file = io["open"](path, "r")
    text = file["read"]("*a")
    file["close"]()
    os["remove"](path)
    return (string["len"](text) - 44) / 4
end

tone = a["form"](441, 1000, "sine", "both")
print(size(tone), a["play"](tone, not), a["pause"](tone))       @@ expect: 44100.000000\ttrue\t0
print(a["trim"](tone, 100, 600), size(tone))                    @@ expect: true\t22050.000000
print(a["speed"](tone, 2), size(tone))                          @@ expect: true\t11025.000000
print(a["pitch"](tone, 0.5), size(tone))                        @@ expect: true\t11025.000000
print(a["speed"](tone, true), a["pitch"](tone, 1))              @@ expect: true\ttrue
silence = a["form"](0, 1000, "saw", "left")
print(a["add"](silence, tone, 400), a["add"](silence, tone, 1000), a["add"](silence, silence, 1))  @@ expect: true\ttrue\ttrue
found = a["findFrequency"](silence, 441, 0, 100, 0.9)
print(len(found), len(found[1]), found[1][1] > 370, found[1][1] < 430, found[1][2] > 620, found[1][2] < 680)  @@ expect: 1\t2\ttrue\ttrue\ttrue\ttrue
print(len(a["findFrequency"](silence, 441, 0, 0, 0.9, 0, 350)), len(a["findFrequency"](silence, 441, 5, 0, 0.5, 450, not)))   @@ expect: 0\t1
print(a["findFrequency"](silence, 441, 0, 0, 0.9, 450, 550)[1][1])  @@ expect: 450
print(len(a["findFrequency"](silence, 441, 0, 0, 0.9, 900, 100)), len(a["findFrequency"](silence, 441, 0, 1000, 0.9)), len(a["findFrequency"](silence, 900, 5, 0, 2)))  @@ expect: 0\t0\t0
print(a["play"](silence, true, 20), a["speed"](silence, 1), a["pause"](silence))    @@ expect: true\ttrue\t20
print(a["play"](silence, true, 20), a["pitch"](silence, 2), a["pause"](silence))    @@ expect: true\ttrue\t0
empty = a["form"](100, 0, "square", "right")
print(empty == not, a["play"](empty, not), len(a["findFrequency"](empty, 441, 0, 0, 1)))    @@ expect: false\tfalse\t0
print(a["trim"](silence, 1000, 1000), a["play"](silence, not))  @@ expect: true\tfalse
print(a["form"](1, 2147483647, "sine", "both"), a["speed"](tone, 0.0000001), size(tone))    @@ expect: not\tfalse\t11025.000000

print(a["add"](not, tone, 1), a["add"](tone, not, 1), a["trim"](not, 0, 1), a["pitch"](not, 2), a["speed"](not, 2), len(a["findFrequency"](not, 100000, 0, 0, 1)))   @@ expect: false\tfalse\tfalse\tfalse\tfalse\t0
print(pcall(a["form"], 1, 1, "sine"))                           @@ expect: false\tAudio.form: missing argument 4
print(pcall(a["form"], -1, -1, "x", "x"))                       @@ expect: false\tAudio.form: frequency must be 0 or greater
print(pcall(a["form"], -0.9, -1, "x", "x"))                     @@ expect: false\tAudio.form: lengthMS must be 0 or greater
print(pcall(a["form"], 1, 1, "x", "x"))                         @@ expect: false\tAudio.form: shape must be square, sine, or saw
print(pcall(a["form"], 1, 1, "saw", "x"))                       @@ expect: false\tAudio.form: side must be left, right, or both
print(pcall(a["form"], -1, 1, 5, "x"))                          @@ expect: false\tAudio.form: shape must be a string
print(pcall(a["add"], tone, 5, 1))                              @@ expect: false\tAudio.add: sourceTrack must be a pointer
print(pcall(a["add"], tone, tone, -1))                          @@ expect: false\tAudio.add: offsetMS must be 0 or greater
print(pcall(a["trim"], tone, 5, -1))                            @@ expect: false\tAudio.trim: offsets must be 0 or greater
print(pcall(a["trim"], tone, 2000, 1000))                       @@ expect: false\tAudio.trim: endOffsetMS must be greater than or equal to startOffsetMS
print(pcall(a["pitch"], tone, 0))                               @@ expect: false\tAudio.pitch: factor must be greater than 0
print(pcall(a["speed"], tone, -2))                              @@ expect: false\tAudio.speed: factor must be greater than 0
print(pcall(a["findFrequency"], tone, 0, -1, -1, 0))            @@ expect: false\tAudio.findFrequency: frequency must be greater than 0
print(pcall(a["findFrequency"], tone, 22050, -1, -1, 0))        @@ expect: false\tAudio.findFrequency: frequency must be below the track Nyquist frequency
print(pcall(a["findFrequency"], tone, 22049, -1, -1, 0))        @@ expect: false\tAudio.findFrequency: toleranceHZ must be 0 or greater
print(pcall(a["findFrequency"], tone, 22049, 0, -1, 0))         @@ expect: false\tAudio.findFrequency: minimumDurationMS must be 0 or greater
print(pcall(a["findFrequency"], tone, 22049, 0, 1000000000000000000000.0, 0))    @@ expect: false\tAudio.findFrequency: minimumDurationMS is too large
print(pcall(a["findFrequency"], tone, 22049, 0, 0, 2.1))        @@ expect: false\tAudio.findFrequency: threshold must be greater than 0 and no more than 2
print(pcall(a["findFrequency"], tone, 22049, 0, 0, 0))          @@ expect: false\tAudio.findFrequency: threshold must be greater than 0 and no more than 2
print(pcall(a["findFrequency"], tone, "x", 0, 0, 0))            @@ expect: false\tAudio.findFrequency: frequency must be numeric
print(pcall(a["findFrequency"], tone, 1, 0, 0, 1, "x"))         @@ expect: false\tAudio.findFrequency: startMS must be numeric
a["free"](tone)
print(a["trim"](tone, 0, 1))                                    @@ expect: false
