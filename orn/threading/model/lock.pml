/* The one-word reader-writer lock as LockSteps.h has it, over the parking of SemaphoreParking.h. The names of the steps
   are those of the code. Whether the lock excludes, and loses no wake-up, is shown by LockStepsTest, which runs the code
   itself. What it cannot show is checked here, by `check` beside this file: that no execution goes on without end. No
   fairness is asked for, so any thread may stand still for ever, and the semaphore serves the threads in any order.

   -DGOING_ROUND takes the room aside out: a thread that has put a count back goes for the semaphore again.
   -DSCENE=1 to 3 chooses the threads. */

#define when(condition, action) if :: condition -> action :: else fi

#define SHARED 1
#define EXCLUSIVE 16

#define WOKEN 0
#define TIMED_OUT 1

byte word[2];
byte waiters;

byte through[2];

#define mustWait(seen) ((add == EXCLUSIVE && seen != 0) || seen >= EXCLUSIVE)

/* ---- Parking ---- */

byte counts;

inline semaphoreWait() {
    if
    :: atomic { counts > 0 -> counts--; result = WOKEN }
    :: timed -> result = TIMED_OUT
    fi
}

/* The wait of no time. */
inline takeCount() {
    atomic { when(counts > 0, counts--; taken = true) }
}

inline semaphoreRelease(more) {
    counts = counts + more
}

byte present;               /* the three numbers of the ledger, which change together */
byte owed;
byte epoch;

byte aside;                 /* how many threads are in the room, its lock, and which of them sleep */
bool locked;
bool asleep[3];

inline lockRoom() {
    atomic { !locked -> locked = true }
}

inline tellAside() {
    when(aside != 0, lockRoom(); locked = false; d_step { asleep[0] = false; asleep[1] = false; asleep[2] = false })
}

inline stepAside() {
    aside++;
    lockRoom();
    do
    :: atomic { epoch != ticket || owed == 0 -> break }
    :: atomic { epoch == ticket && owed != 0 -> skip };
       atomic { asleep[self] = true; locked = false };
       if
       :: atomic { !asleep[self] && !locked -> locked = true }
       :: atomic { timed && asleep[self] && !locked -> asleep[self] = false; locked = true; result = TIMED_OUT; break }
       fi
    od;
    locked = false;
    aside--
}

inline takeTicket() {
    atomic { present++; ticket = epoch }
}

#define SETTLED 0
#define SURPLUS 1
#define ANOTHERS 2

/* One look at the ledger and one change of it. */
inline settle() {
    atomic {
        last = false;
        if
        :: epoch != ticket -> owed--; last = (owed == 0); ticket = epoch; back = SETTLED
        :: epoch == ticket && owed == 0 -> back = SURPLUS
        :: else -> back = ANOTHERS
        fi
    };
    when(last, tellAside())
}

inline sleep() {
    do
    :: semaphoreWait();
       when(result == TIMED_OUT, break);
       settle();
       when(back != ANOTHERS, break);
       semaphoreRelease(1);
#ifndef GOING_ROUND
       stepAside();
       when(result == TIMED_OUT, break);
       when(epoch != ticket, takeCount(); settle(); break)
#endif
    od;
    back = 0
}

inline giveBack() {
    taken = false;
    do
    :: atomic { ledger = epoch; ledgerPresent = present; ledgerOwed = owed };
       when(ledger != ticket && !taken, takeCount());
       atomic {
           when(ledger == epoch && ledgerPresent == present && ledgerOwed == owed,
                present--; owed = owed - (ledger != ticket -> 1 : 0); break)
       }
    od;
    when(ledger != ticket && ledgerOwed == 1, tellAside());
    d_step { ledger = 0; ledgerPresent = 0; ledgerOwed = 0 }
}

inline wake() {
    atomic { back = present - owed; when(back != 0, owed = present; epoch++) };
    when(back != 0, semaphoreRelease(back); tellAside());
    back = 0
}

/* ---- The lock ---- */

#define swap(next) \
    atomic { \
        if \
        :: word[at] == seen -> word[at] = next; swapped = true \
        :: else -> seen = word[at]; swapped = false \
        fi \
    }

inline announce() {
    waiters++;
    takeTicket()
}

inline retire() {
    giveBack();
    waiters--
}

inline waitFor() {
    announce();
    seen = word[at];
    result = WOKEN;
    do
    :: mustWait(seen) ->
       sleep();
       when(result == TIMED_OUT, break);
       seen = word[at]
    :: else -> break
    od;
    retire()
}

inline acquire() {
    held = false;
    seen = word[at];
    do
    :: mustWait(seen) ->
       waitFor();
       when(result == TIMED_OUT, break)
    :: else ->
       swap(seen + add);
       when(swapped, held = true; break)
    od
}

inline release() {
    seen = word[at];
    do
    :: swap(seen - add);
       when(swapped, break)
    od;
    when(waiters != 0, wake());
    seen = 0
}

/* ---- The threads ---- */

#define LOCALS \
    byte seen, ticket, ledger, ledgerPresent, ledgerOwed, back, result; \
    bool swapped, taken, held, last

proctype Visitor(byte self; byte at; byte add; bool timed; byte rounds) {
    LOCALS;
    do
    :: rounds > 0 ->
       rounds--;
       acquire();
       when(held, release())
    :: else -> break
    od;
    through[at]++
}

/* Holds both words, releases the second, and the first only when a visitor of the second is through. */
proctype HolderOfBoth(byte self) {
    LOCALS;
    byte at;
    byte add = EXCLUSIVE;
    at = 1;
    release();
    through[1] > 0;
    at = 0;
    release()
}

init {
    atomic {
#if SCENE == 1
        run Visitor(0, 0, EXCLUSIVE, false, 2);
        run Visitor(1, 0, EXCLUSIVE, false, 2)
#else
        word[0] = EXCLUSIVE;
        word[1] = EXCLUSIVE;
        run HolderOfBoth(0);
#if SCENE == 2
        run Visitor(1, 0, EXCLUSIVE, false, 2);
        run Visitor(2, 1, SHARED, false, 2)
#else
        run Visitor(1, 0, SHARED, true, 2);
        run Visitor(2, 1, EXCLUSIVE, false, 2)
#endif
#endif
    }
}
