s = "12,345,6789,-5,99,"
while len(s) < 500000: s += s
at = total = 0
nxt = s.find(",", at)
while nxt >= 0:
    total += int(s[at:nxt]); at = nxt + 1; nxt = s.find(",", at)
print(total)
