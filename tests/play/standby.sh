#!/usr/bin/env bash
# Four desktops take payments on two PostgreSQL servers that stand in for one another. At a moment that is drawn
# something happens to one of them, and the desktops go on by themselves: nobody is told of a failure (but where the
# disk is full), each receipt that was told as saved is stored once, and nothing else is. The server then comes back as
# the standby and takes no save by itself, and the next thing happens.
#   script/with-cluster tests/play/standby.sh PROGRAM FOLDER FAULT...
# kill, freeze, cut and fill befall the one that leads, mute too, but for 40 seconds only; alone is the standby cut off.
# script/with-cluster tells what they are.
set -u
[ -n "${KAUNTER_CLUSTER:-}" ] || { echo "no cluster to play on: script/test --engine cluster starts one"; exit 1; }
program=$1
folder=$2
shift 2
SEED=${SEED:-$$}
RANDOM=$SEED
echo "SEED=$SEED $*"
count=30
desks="1 2 3 4"
now=(--now "2024-01-31 09:00:00")
fail() { echo "$*" >&2; exit 1; }

rm -rf "$folder"
mkdir -p "$folder/app"
for database in standby standby-Logs; do
  dropdb --if-exists --force $database && createdb -T template0 -E UTF8 $database || exit 1
done
cat >"$folder/settings.ini" <<END
ConnDataSource = Office
ShortDate = dd-MM-yyyy
[Office]
odbc = $KAUNTER_POSTGRESQL;Database=standby
create = yes
END

play() { # NAME: in the folder of that name
  mkdir -p "$folder/$1"
  exec "$program" --app "$folder/$1" --settings "$folder/settings.ini" "${now[@]}" "$folder/$1.play" >"$folder/$1.out" 2>&1
}

{
  echo 'signin ADMIN zebrawindmill'
  echo "sql \"INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotLoanAmt2,TotTopUpAmt) VALUES ('HQ0001','HQ','Tan Ah Kow','ACTIVE',0,0,0,0)\""
  echo "sql \"INSERT INTO NumberMast VALUES ('HQ0001','000','000')\""
  echo 'menu NewLoanMnu'
  for _ in 1 2 3 4 5; do
    printf '%s\n' 'set CustID HQ0001' 'set LoanType Unsecured' 'set TrxDate 01-01-2024' \
      'set DragLoan "Personal Loan"' 'set LoanPurpose FLAT' 'set LoanAmt 10000' 'set InsRate 18' \
      'set LoanTerm 12' 'click Command3' 'answer yes' 'click SaveCmd' 'click CmdNew'
  done
  echo close
  echo 'sql "UPDATE LoanMast SET PayOutAmt=LoanAmt"'
} >"$folder/make.play"
(play make) || fail "the office was not made: $folder/make.out"

# Each desktop by turns on a loan of its own and on one that all share.
for desk in $desks; do
  {
    echo 'signin ADMIN zebrawindmill'
    echo 'menu NewPaymentMnu'
    for k in $(seq $count); do
      loan=HQ0001-00$desk
      [ $((k % 2)) -eq 0 ] || loan=HQ0001-005
      printf '%s\n' "set LoanID $loan" 'set PayDate 31-01-2024' 'set TotPay 15.01' 'answer yes' 'click SaveCmd' \
        'click CmdClear'
    done
    echo close
  } >"$folder/desk$desk.play"
done
printf '%s\n' 'signin ADMIN zebrawindmill' 'show StandbyLBL' 'menu ReUpdInt' 'click VerifyCmd' close >"$folder/verify.play"
printf '%s\n' 'signin ADMIN zebrawindmill' 'menu ReUpdInt' 'click VerifyCmd' 'answer yes' 'click RepairCmd' close >"$folder/mend.play"

told() { cat "$folder"/desk?.out "$folder"/round*/desk?.out 2>/dev/null | sed -n 's/.*Payment ID \(.*\) Saved$/\1/p'; }
stored() { PGHOST=$("$KAUNTER_CLUSTER" address "$("$KAUNTER_CLUSTER" leader)") psql -Atq standby -c "SELECT \"$1\" FROM \"PaymentMast\" ORDER BY 1"; }
compare() {
  told | sort >"$folder/told"
  stored PayID | sort >"$folder/stored"
  cmp -s "$folder/told" "$folder/stored" || fail "told and stored differ: $(diff "$folder/told" "$folder/stored")"
}
seconds() { date +%s.%N; }

expected=0
round=0
for fault in "$@"; do
  round=$((round + 1))
  lead=$("$KAUNTER_CLUSTER" leader) || fail "nobody leads"
  other=$([ "$lead" = east ] && echo west || echo east)
  at=$((RANDOM % (2 * count) + count / 2))
  lost=$lead
  next=$other # who leads afterwards
  do=$fault
  case "$fault" in
    alone) lost=$other next=$lead do=cut ;;
    mute) next=$lead ;;
  esac
  pids=
  for desk in $desks; do
    (play "desk$desk") &
    pids="$pids $!"
  done
  # When each receipt was told, to a twentieth of a second.
  begin=
  before=$(told | wc -l)
  last=$(seconds)
  seen=$before
  longest=0
  while kill -0 $pids 2>/dev/null || [ -n "$(jobs -pr)" ]; do
    receipts=$(told | wc -l)
    time=$(seconds)
    if [ "$receipts" -ne "$seen" ]; then
      longest=$(echo "$time $last $longest" | awk '{ d = $1 - $2; print (d > $3 ? d : $3) }')
      seen=$receipts
      last=$time
    fi
    if [ -z "$begin" ] && [ "$receipts" -ge $((before + at)) ]; then
      sleep "0.0$((RANDOM % 10))"
      "$KAUNTER_CLUSTER" "$do" "$lost"
      [ "$fault" != mute ] || (sleep 40 && "$KAUNTER_CLUSTER" restore "$lost") &
      begin=$time
    fi
    sleep 0.05
  done
  [ -n "$begin" ] || fail "the desktops ended before the server was lost"
  for pid in $pids; do
    wait "$pid" || [ "$fault" = fill ] || fail "a desktop ended with a failure: $folder/desk?.out"
  done
  wrong=$(grep -h -A2 '^\[critical\]' "$folder"/desk?.out)
  if [ "$fault" = fill ]; then
    echo "$wrong" | grep -q 'no room left for the database' || fail "nobody is told that the disk is full"
    expected=$(told | wc -l)
    # As the administrator does: the other server leads, and the balances that were told as behind are rebuilt.
    time=$(seconds)
    "$KAUNTER_CLUSTER" switchover || fail "$lost keeps the lead"
    (play mend) || fail "the balances were not rebuilt: $folder/mend.out"
    echo "  $other leads and the balances stand $(echo "$(seconds) $time" | awk '{ print $1 - $2 }') seconds later"
  else
    [ -z "$wrong" ] || fail "a clerk was told: $wrong"
    expected=$((expected + 4 * count))
  fi
  new=$("$KAUNTER_CLUSTER" leader) || fail "nobody leads"
  [ "$new" = "$next" ] || fail "$new leads"
  mkdir "$folder/round$round"
  mv "$folder"/desk?.out "$folder/round$round"
  compare
  receipts=$(stored ReceiptNo | sort -u | wc -l)
  [ "$receipts" -eq $expected ] || fail "$receipts receipts of $expected"
  (play verify) || fail "the ledger was not verified"
  grep -q '5 loans verified, all hold$' "$folder/verify.out" || fail "the ledger does not hold: $folder/verify.out"
  case "$fault" in
    kill | alone) grep -q 'stands on one machine alone' "$folder/verify.out" || fail "nobody is told that $lost is away" ;;
  esac
  echo "$fault of $lost at receipt $((before + at)): $new leads, the desktops stood for $longest seconds;" \
    "$(wc -l <"$folder/told") receipts told, $(wc -l <"$folder/stored") stored, $(sort -u "$folder/stored" | wc -l) different"

  # Back again: what it alone had written is undone, and it takes nothing by itself.
  "$KAUNTER_CLUSTER" restore "$lost"
  back=$(seconds)
  "$KAUNTER_CLUSTER" ready || fail "$lost did not become the standby"
  [ "$("$KAUNTER_CLUSTER" leader)" = "$new" ] || fail "$lost has taken the lead from $new"
  compare
  echo "  two of them again $(echo "$(seconds) $back" | awk '{ print $1 - $2 }') seconds after its end"
  (play verify)
  grep -q 'stands on one machine alone' "$folder/verify.out" && fail "$lost is told as away, but it is back"
  [ "$new" != "$lost" ] || continue
  if PGHOST=$("$KAUNTER_CLUSTER" address "$lost") PGTARGETSESSIONATTRS=any \
    psql -q standby -c 'DELETE FROM "PaymentMast"' 2>"$folder/refusal"; then
    fail "$lost takes saves beside $new"
  fi
  grep -q read-only "$folder/refusal" || fail "$lost refuses for another reason: $(cat "$folder/refusal")"
done
