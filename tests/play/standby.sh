#!/usr/bin/env bash
# Four desktops take payments on two PostgreSQL servers that stand in for one another. At a moment that is drawn all
# processes of the server that leads are killed, or stand still; the other takes over, and the desktops go on by
# themselves: nobody is told of a failure, each receipt that was told as saved is stored once, and nothing else is.
# The server that was lost then comes back as the standby, takes no save by itself, and the other one is lost.
#   script/with-cluster tests/play/standby.sh PROGRAM FOLDER [SEED] [kill|freeze]
set -u
[ -n "${KAUNTER_CLUSTER:-}" ] || { echo "no cluster to play on: script/test --engine cluster starts one"; exit 1; }
program=$1
folder=$2
RANDOM=${3:-$$}
how=${4:-kill}
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
      printf '%s\n' "set LoanID $loan" 'set PayDate 31-01-2024' 'set TotPay 45.01' 'answer yes' 'click SaveCmd' \
        'click CmdClear'
    done
    echo close
  } >"$folder/desk$desk.play"
done
printf '%s\n' 'signin ADMIN zebrawindmill' 'show StandbyLBL' 'menu ReUpdInt' 'click VerifyCmd' close >"$folder/verify.play"

told() { cat "$folder"/desk?.out "$folder"/round*/desk?.out 2>/dev/null | sed -n 's/.*Payment ID \(.*\) Saved$/\1/p'; }
stored() { psql -Atq standby -c "SELECT \"$1\" FROM \"PaymentMast\" ORDER BY 1"; }
seconds() { date +%s.%N; }

for round in 1 2; do
  lost=$("$KAUNTER_CLUSTER" leader) || fail "nobody leads"
  at=$((RANDOM % (2 * count) + count / 2 + (round - 1) * 4 * count))
  pids=
  for desk in $desks; do
    (play "desk$desk") &
    pids="$pids $!"
  done
  # When each receipt was told, to a twentieth of a second.
  begin=
  last=$(seconds)
  seen=$(told | wc -l)
  longest=0
  while kill -0 $pids 2>/dev/null || [ -n "$(jobs -pr)" ]; do
    receipts=$(told | wc -l)
    time=$(seconds)
    if [ "$receipts" -ne "$seen" ]; then
      longest=$(echo "$time $last $longest" | awk '{ d = $1 - $2; print (d > $3 ? d : $3) }')
      seen=$receipts
      last=$time
    fi
    if [ -z "$begin" ] && [ "$receipts" -ge $at ]; then
      sleep "0.0$((RANDOM % 10))"
      "$KAUNTER_CLUSTER" "$how" "$lost"
      begin=$time
    fi
    sleep 0.05
  done
  [ -n "$begin" ] || fail "the desktops ended before the server was lost"
  for pid in $pids; do wait "$pid" || fail "a desktop ended with a failure: $folder/desk?.out"; done
  wrong=$(grep -h '^\[critical\]' "$folder"/desk?.out)
  [ -z "$wrong" ] || fail "a clerk was told: $wrong"
  new=$("$KAUNTER_CLUSTER" leader) || fail "nobody leads"
  [ "$new" != "$lost" ] || fail "$lost leads again"
  mkdir "$folder/round$round"
  mv "$folder"/desk?.out "$folder/round$round"
  told | sort >"$folder/told"
  stored PayID | sort >"$folder/stored"
  cmp -s "$folder/told" "$folder/stored" || fail "told and stored differ: $(diff "$folder/told" "$folder/stored")"
  receipts=$(stored ReceiptNo | sort -u | wc -l)
  [ "$receipts" -eq $((4 * count * round)) ] || fail "$receipts receipts of $((4 * count * round))"
  (play verify) || fail "the ledger was not verified"
  grep -q '5 loans verified, all hold$' "$folder/verify.out" || fail "the ledger does not hold: $folder/verify.out"
  [ "$how" != kill ] || grep -q 'stands on one machine alone' "$folder/verify.out" || fail "nobody is told that $lost is away"
  echo "$how of $lost at receipt $at: $new took over, the desktops stood for $longest seconds;" \
    "$(wc -l <"$folder/told") receipts told, $(wc -l <"$folder/stored") stored, $(sort -u "$folder/stored" | wc -l) different"

  # Back again: what it alone had written is undone, and it takes nothing by itself.
  if [ "$how" = kill ]; then "$KAUNTER_CLUSTER" start "$lost"; else "$KAUNTER_CLUSTER" thaw "$lost"; fi
  "$KAUNTER_CLUSTER" ready || fail "$lost did not become the standby"
  if PGHOST=$("$KAUNTER_CLUSTER" address "$lost") PGTARGETSESSIONATTRS=any \
    psql -q standby -c 'DELETE FROM "PaymentMast"' 2>"$folder/refusal"; then
    fail "$lost takes saves beside $new"
  fi
  (play verify)
  grep -q 'stands on one machine alone' "$folder/verify.out" && fail "$lost is told as away, but it is back"
  grep -q read-only "$folder/refusal" || fail "$lost refuses for another reason: $(cat "$folder/refusal")"
done
