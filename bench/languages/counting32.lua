local i, s = 0, 0
while i < 3000000 do s = ((s + (i * 3)) ~ i) & 0xFFFFFFFF; i = i + 1 end
io.write(s, "\n")
