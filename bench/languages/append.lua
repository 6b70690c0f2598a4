local s, i = {}, 0
while i < 1000000 do s[#s + 1] = "x"; i = i + 1 end
io.write(#table.concat(s), "\n")
