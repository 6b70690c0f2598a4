local s = "a line of text that is not too long\n"; while #s < 4194304 do s = s .. s end
local i, n, size = 0, 0, #s
while i < size do if string.sub(s, i + 1, i + 1) == "\n" then n = n + 1 end; i = i + 1 end
io.write(n, "\n")
