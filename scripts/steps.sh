# A command that takes a while, told in one line. Sourced by the commands at the root.

# Prints the name of a step, runs its command, and says how long that took. What the command prints is shown only if it
# fails, with its status.
step() {
  local name=$1 start=$SECONDS log status=0
  shift
  printf '== %s' "$name"
  log=$(mktemp)
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -eq 0 ]; then
    echo ": $((SECONDS - start)) s"
  else
    echo ": failed"
    cat "$log"
  fi
  rm -f "$log"
  return "$status"
}
