proc main {} {
  set s "12,345,6789,-5,99,"
  while {[string length $s] < 500000} { append s $s }
  set at 0; set sum 0
  set next [string first "," $s $at]
  while {$next >= 0} {
    incr sum [string range $s $at [expr {$next - 1}]]; set at [expr {$next + 1}]; set next [string first "," $s $at]
  }
  puts $sum
}
main
