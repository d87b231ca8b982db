/* The one-word reader-writer lock as LockSteps.h has it, over the parking of SemaphoreParking.h. The names of the steps
   are those of the code. Whether the lock excludes, and loses no wake-up, is shown by LockStepsTest, which runs the code
   itself. What it cannot show is checked here, by `check` beside this file: that no execution goes on without end. No
   fairness is asked for, so any thread may stand still for ever, and the semaphore serves the threads in any order.

   -DGOING_ROUND takes the room aside out: a thread that has put a count back goes for the semaphore again.
   -DSCENE=1 or 2 chooses the threads. */

#define when(condition, action) if :: condition -> action :: else fi

#define SHARED 1
#define EXCLUSIVE 16

byte word[2];
byte through[2];

#define mustWait(seen) ((add == EXCLUSIVE && seen != 0) || seen >= EXCLUSIVE)

/* ---- Parking ---- */

byte counts;                /* of the semaphore */

inline semaphoreWait() {
    if
    :: atomic { counts > 0 -> counts-- }
    :: timed -> timedOut = true
    fi
}

/* The wait of no time. */
inline takeCount() {
    atomic { when(counts > 0, counts--; taken = true) }
}

short ledger;               /* its three numbers, which change together */

#define ONE_PRESENT 1
#define ONE_OWED 8
#define ONE_EPOCH 64
#define present(ledger) (ledger % ONE_OWED)
#define owed(ledger) (ledger % ONE_EPOCH / ONE_OWED)
#define epoch(ledger) (ledger / ONE_EPOCH)

/* The thread waits for the condition itself. The schedules show that the code wakes it in time. */
inline stepAside() {
    if
    :: epoch(ledger) != ticket || owed(ledger) == 0
    :: timed -> timedOut = true
    fi
}

/* One look at the ledger and one change of it. */
inline settle() {
    atomic {
        settled = (epoch(ledger) != ticket);
        anothers = (!settled && owed(ledger) != 0);
        when(settled, ledger = ledger - ONE_OWED; ticket = epoch(ledger))
    }
}

inline sleep() {
    do
    :: semaphoreWait();
       when(timedOut, break);
       settle();
       when(!anothers, break);
       counts++;
#ifndef GOING_ROUND
       stepAside();
       when(timedOut, break);
       when(epoch(ledger) != ticket, takeCount(); settle(); break)
#endif
    od
}

inline giveBack() {
    taken = false;
    do
    :: old = ledger;
       when(epoch(old) != ticket && !taken, takeCount());
       atomic { when(ledger == old, ledger = old - ONE_PRESENT - (epoch(old) != ticket -> ONE_OWED : 0); break) }
    od;
    old = 0
}

inline wake() {
    atomic {
        fresh = present(ledger) - owed(ledger);
        when(fresh != 0, ledger = ledger + ONE_EPOCH + fresh * ONE_OWED)
    };
    counts = counts + fresh;
    fresh = 0
}

/* ---- The lock ---- */

/* A swap that fails is left out, because it fails only where the swap of another thread has succeeded. */

inline waitFor() {
    atomic { ledger = ledger + ONE_PRESENT; ticket = epoch(ledger) };
    do
    :: mustWait(word[at]) ->
       sleep();
       when(timedOut, break)
    :: else -> break
    od;
    giveBack()
}

inline acquire() {
    timedOut = false;
    do
    :: mustWait(word[at]) ->
       waitFor();
       when(timedOut, break)
    :: atomic { !mustWait(word[at]) -> word[at] = word[at] + add; break }
    od
}

/* Each thread that waits is in the ledger, so the count of waiting threads is not needed. */
inline release() {
    word[at] = word[at] - add;
    wake()
}

/* ---- The threads ---- */

#define LOCALS \
    byte ticket, fresh; \
    short old; \
    bool taken, settled, anothers, timedOut

proctype Visitor(byte at; byte add; bool timed; byte rounds) {
    LOCALS;
    do
    :: rounds > 0 ->
       rounds--;
       acquire();
       when(!timedOut, release())
    :: else -> break
    od;
    through[at]++
}

/* Holds both words, releases the second, and the first only when a visitor of the second is through. */
proctype HolderOfBoth() {
    LOCALS;
    byte at = 1;
    byte add = EXCLUSIVE;
    release();
    through[1] > 0;
    at = 0;
    release()
}

init {
    atomic {
        word[0] = EXCLUSIVE;
        word[1] = EXCLUSIVE;
        run HolderOfBoth();
#if SCENE == 1
        run Visitor(0, EXCLUSIVE, false, 2);
        run Visitor(1, SHARED, false, 2)
#else
        run Visitor(0, SHARED, true, 2);
        run Visitor(1, EXCLUSIVE, false, 2)
#endif
    }
}
