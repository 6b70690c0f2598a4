local i, j, s = 0, 0, 0
while i < 2000 do j = 0; while j < 1500 do s = s + (j & 7); j = j + 1 end; i = i + 1 end
io.write(s, "\n")
