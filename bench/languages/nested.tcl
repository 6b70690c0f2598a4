proc main {} {
  set i 0; set s 0
  while {$i < 2000} { set j 0; while {$j < 1500} { incr s [expr {$j & 7}]; incr j }; incr i }
  puts $s
}
main
