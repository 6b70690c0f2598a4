proc sq {n} { expr {$n * $n} }
proc apply_ {f n} { set i 0; set s 0; while {$i < $n} { incr s [$f $i]; incr i }; return $s }
puts [apply_ sq 500000]
