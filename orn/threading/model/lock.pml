/* The one-word reader-writer lock as LockSteps.h has it, over the parking of EpochParking.h (-DEPOCH) or that of
   SemaphoreParking.h (-DSEMAPHORE). The names of the steps are those of the code. Checked by `check` beside this file:

   mutual exclusion     the assertions at swap
   no lost wake-up      no invalid end state: every thread comes to its end
   the count returns    the assertions at the end
   no going round       no infinite execution (with -DHANDED_OVER, where the semaphore serves who waits before who comes)

   -DUNCURED takes the cure out: the ticket is the epoch at the time of going to sleep, or the semaphore has no ledger.
   -DSCENE=1 to 8 says who comes. */

#define FREE 0
#define SHARED 1
#define EXCLUSIVE 16

#define WOKEN 0
#define TIMED_OUT 1

byte word[2];
byte waiters;

byte readers[2];            /* who is inside, by no account of the lock's */
byte writers[2];
byte through[2];
byte ended;

#define mustWait(seen) ((add == EXCLUSIVE && seen != 0) || seen >= EXCLUSIVE)

/* ---- Parking ---- */

#ifdef EPOCH

#define TICKET_OUT 1

byte epoch;
bool asleep[3];

inline takeTicket() {
    atomic { epoch = epoch | TICKET_OUT; ticket = epoch }
}

/* The kernel compares the word and puts the thread to sleep in one step; a thread asleep wakes by wakeAll only. */
inline sleep() {
#ifdef UNCURED
    ticket = epoch;
#endif
    result = WOKEN;
    do
    :: atomic { epoch != ticket -> break }
    :: atomic { epoch == ticket -> asleep[self] = true };
       if
       :: !asleep[self]
       :: atomic { timed && asleep[self] -> asleep[self] = false; result = TIMED_OUT; break }
       fi
    od;
    if
    :: result == WOKEN -> takeTicket()
    :: else
    fi
}

inline giveBack() { skip }

inline wake() {
    ledger = epoch;
    do
    :: (ledger & TICKET_OUT) == 0 -> break
    :: else ->
       atomic {
           if
           :: epoch == ledger -> epoch = ledger + 1; swapped = true
           :: else -> ledger = epoch; swapped = false
           fi
       };
       if
       :: swapped ->
          d_step { asleep[0] = false; asleep[1] = false; asleep[2] = false };
          break
       :: else
       fi
    od
}

#define idle true

#else

byte counts;
bool queued[3];

#ifdef HANDED_OVER

inline semaphoreWait() {
    atomic {
        if
        :: counts > 0 -> counts--
        :: else -> queued[self] = true
        fi
    };
    if
    :: !queued[self] -> result = WOKEN
    :: atomic { timed && queued[self] -> queued[self] = false; result = TIMED_OUT }
    fi
}

inline semaphoreRelease(more) {
    atomic {
        counts = counts + more;
        do
        :: counts > 0 && queued[0] -> counts--; queued[0] = false
        :: counts > 0 && queued[1] -> counts--; queued[1] = false
        :: counts > 0 && queued[2] -> counts--; queued[2] = false
        :: else -> break
        od
    }
}

#else

inline semaphoreWait() {
    if
    :: atomic { counts > 0 -> counts--; result = WOKEN }
    :: timed -> result = TIMED_OUT
    fi
}

inline semaphoreRelease(more) {
    counts = counts + more
}

#endif

#ifdef UNCURED

inline takeTicket() { skip }
inline sleep() { semaphoreWait() }
inline giveBack() { skip }
inline wake() {
    if
    :: seenWaiters != 0 -> semaphoreRelease(seenWaiters)
    :: else
    fi
}

#define idle true

#else

byte present;               /* the three numbers of the ledger, which change together */
byte owed;
byte epoch;

inline takeTicket() {
    atomic { present++; ticket = epoch }
}

inline sleep() {
    semaphoreWait();
    if
    :: result == WOKEN ->
       atomic {
           if
           :: epoch != ticket -> owed--; ticket = epoch; back = 0
           :: epoch == ticket && owed == 0 -> back = 0
           :: else -> back = 1
           fi
       };
       if
       :: back == 1 -> semaphoreRelease(1)
       :: else
       fi
    :: else
    fi
}

inline giveBack() {
    taken = false;
    do
    :: atomic { ledger = epoch; ledgerPresent = present; ledgerOwed = owed };
       if
       :: ledger != ticket && !taken ->
          atomic {
              if
              :: counts > 0 -> counts--; taken = true
              :: else
              fi
          }
       :: else
       fi;
       atomic {
           if
           :: ledger == epoch && ledgerPresent == present && ledgerOwed == owed ->
              present--;
              owed = owed - (ledger != ticket -> 1 : 0);
              break
           :: else
           fi
       }
    od
}

inline wake() {
    atomic {
        back = present - owed;
        if
        :: back != 0 -> owed = present; epoch++
        :: else
        fi
    };
    if
    :: back != 0 -> semaphoreRelease(back)
    :: else
    fi
}

#define idle (present == 0 && owed == 0)

#endif
#endif

/* ---- The lock ---- */

#define swap(next) \
    if \
    :: word[at] == seen -> word[at] = next; swapped = true \
    :: else -> seen = word[at]; swapped = false \
    fi

inline enter() {
    assert(writers[at] == 0);
    if
    :: add == EXCLUSIVE -> assert(readers[at] == 0); writers[at]++
    :: else -> readers[at]++
    fi
}

inline leave() {
    if
    :: add == EXCLUSIVE -> writers[at]--
    :: else -> readers[at]--
    fi
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
       if
       :: result == TIMED_OUT -> break
       :: else -> seen = word[at]
       fi
    :: else -> break
    od;
    retire()
}

inline acquire() {
    held = false;
    seen = FREE;
    do
    :: atomic {
           swap(seen + add);
           if
           :: swapped -> enter(); held = true; break
           :: else
           fi
       };
       if
       :: mustWait(seen) ->
          waitFor();
          if
          :: result == TIMED_OUT -> break
          :: else
          fi
       :: else
       fi
    od
}

inline release() {
    seen = add;
    do
    :: atomic {
           swap(seen - add);
           if
           :: swapped -> leave(); break
           :: else
           fi
       }
    od;
    seenWaiters = waiters;
    if
    :: seenWaiters != 0 -> wake()
    :: else
    fi;
    seenWaiters = 0;
    seen = 0
}

/* ---- Who comes ---- */

#define LOCALS \
    byte seen, ticket, ledger, ledgerPresent, ledgerOwed, back, seenWaiters, result; \
    bool swapped, taken, held

proctype Visitor(byte self; byte at; byte add; bool timed; byte rounds) {
    LOCALS;
    do
    :: rounds > 0 ->
       rounds--;
       acquire();
       if
       :: held -> release()
       :: else
       fi
    :: else -> break
    od;
    atomic { through[at]++; ended++ }
}

/* Holds both words, releases the second, and the first only when a visitor of the second is through. */
proctype HolderOfBoth(byte self) {
    LOCALS;
    byte at;
    byte add = EXCLUSIVE;
    at = 1;
    do
    :: release();
       if
       :: at == 0 -> break
       :: else -> through[1] > 0; at = 0
       fi
    od;
    ended++
}

init {
    byte threads = 3;
    atomic {
#if SCENE == 1
        threads = 2;
        run Visitor(0, 0, EXCLUSIVE, false, 2);
        run Visitor(1, 0, EXCLUSIVE, false, 2);
#elif SCENE == 2
        threads = 2;
        run Visitor(0, 0, EXCLUSIVE, false, 2);
        run Visitor(1, 0, SHARED, false, 2);
#elif SCENE == 3
        threads = 2;
        run Visitor(0, 0, EXCLUSIVE, true, 2);
        run Visitor(1, 0, SHARED, true, 2);
#elif SCENE == 4
        run Visitor(0, 0, EXCLUSIVE, false, 2);
        run Visitor(1, 0, EXCLUSIVE, false, 1);
        run Visitor(2, 0, EXCLUSIVE, false, 1);
#elif SCENE == 5
        run Visitor(0, 0, EXCLUSIVE, false, 2);
        run Visitor(1, 0, SHARED, false, 1);
        run Visitor(2, 0, SHARED, false, 1);
#elif SCENE == 6
        run Visitor(0, 0, EXCLUSIVE, true, 2);
        run Visitor(1, 0, SHARED, false, 1);
        run Visitor(2, 0, EXCLUSIVE, false, 1);
#elif SCENE == 7
        word[0] = EXCLUSIVE;
        word[1] = EXCLUSIVE;
        writers[0] = 1;
        writers[1] = 1;
        run HolderOfBoth(0);
        run Visitor(1, 0, EXCLUSIVE, false, 2);
        run Visitor(2, 1, SHARED, false, 2);
#elif SCENE == 8
        word[0] = EXCLUSIVE;
        word[1] = EXCLUSIVE;
        writers[0] = 1;
        writers[1] = 1;
        run HolderOfBoth(0);
        run Visitor(1, 0, SHARED, true, 2);
        run Visitor(2, 1, EXCLUSIVE, false, 2);
#endif
    };
    ended == threads;
    assert(word[0] == FREE && word[1] == FREE);
    assert(waiters == 0 && idle)
}
