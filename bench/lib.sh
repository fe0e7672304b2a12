# Shared pieces of the benchmark scripts (sourced, not run).

# timed OUTVAR COMMAND...: runs the command with /usr/bin/time; sets
# OUTVAR_wall (seconds) and OUTVAR_kib (peak resident KiB). Output goes to
# $work/OUTVAR.out and $work/OUTVAR.err.
timed() {
  local var=$1; shift
  /usr/bin/time -f "%e %M" -o "$work/$var.time" "$@" >"$work/$var.out" 2>"$work/$var.err" || {
    echo "failed: $*" >&2; tail -5 "$work/$var.err" >&2; return 1; }
  local wall rss
  read -r wall rss <"$work/$var.time"
  printf -v "${var}_wall" '%s' "$wall"
  printf -v "${var}_kib" '%s' "$rss"
}

# moov_offset FILE: position of the top-level moov atom (or of the first
# atom of size 0), as a camera's recording cut off before it stands.
moov_offset() {
  python3 - "$1" <<'PY'
import struct, sys
f = open(sys.argv[1], 'rb'); pos = 0
while True:
    f.seek(pos); h = f.read(16)
    if len(h) < 8: print(pos); break
    size, code = struct.unpack('>I4s', h[:8])
    if size == 1: size = struct.unpack('>Q', h[8:16])[0]
    if code == b'moov' or size == 0: print(pos); break
    pos += size
PY
}
