local function sq(n) return n * n end
local function apply(f, n) local i, s = 0, 0; while i < n do s = s + f(i); i = i + 1 end; return s end
io.write(apply(sq, 500000), "\n")
