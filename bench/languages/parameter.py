def sq(n): return n * n
def apply(f, n):
    i = s = 0
    while i < n: s += f(i); i += 1
    return s
print(apply(sq, 500000))
