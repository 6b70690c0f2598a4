proc main {} {
  set i 0; set s 0
  while {$i < 3000000} { set s [expr {(($s + ($i * 3)) ^ $i) & 0xFFFFFFFF}]; incr i }
  puts $s
}
main
