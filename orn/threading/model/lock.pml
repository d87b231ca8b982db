/* The one-word reader-writer lock as LockSteps.h has it, over the parking of EpochParking.h (-DEPOCH) or that of
   SemaphoreParking.h (-DSEMAPHORE). The names of the steps are those of the code. Checked by `check` beside this file:

   mutual exclusion     the assertions at swap
   no lost wake-up      no invalid end state: every thread comes to its end
   the count returns    the assertions at the end
   no going round       no infinite execution, and no fairness is asked for it: a thread may stand still for ever

   -DUNCURED takes the cure out: the ticket is the epoch at the time of going to sleep, or the semaphore has no ledger.
   -DGOING_ROUND takes the other one out: who has put a count back goes for the semaphore again.
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

byte epoch;
bool asleep[3];

inline takeTicket() {
    ticket = epoch
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
    epoch++;
    d_step { asleep[0] = false; asleep[1] = false; asleep[2] = false }
}

#define idle true

#else

byte counts;

inline semaphoreWait() {
    if
    :: atomic { counts > 0 -> counts--; result = WOKEN }
    :: timed -> result = TIMED_OUT
    fi
}

inline semaphoreRelease(more) {
    counts = counts + more
}

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

byte aside;                 /* who is in the room, its lock, and who of them sleeps */
bool locked;
bool asleep[3];

inline lockRoom() {
    atomic { !locked -> locked = true }
}

inline tellAside() {
    if
    :: aside != 0 ->
       lockRoom();
       locked = false;
       d_step { asleep[0] = false; asleep[1] = false; asleep[2] = false }
    :: else
    fi
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
    if
    :: last -> tellAside()
    :: else
    fi
}

inline sleep() {
    do
    :: semaphoreWait();
       if
       :: result == TIMED_OUT -> break
       :: else
       fi;
       settle();
       if
       :: back != ANOTHERS -> break
       :: else
       fi;
       semaphoreRelease(1);
#ifndef GOING_ROUND
       stepAside();
       if
       :: result == TIMED_OUT -> break
       :: else
       fi;
       if
       :: epoch != ticket ->
          atomic {
              if
              :: counts > 0 -> counts--
              :: else
              fi
          };
          settle();
          break
       :: epoch == ticket
       fi
#endif
    od;
    back = 0
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
    od;
    if
    :: ledger != ticket && ledgerOwed == 1 -> tellAside()
    :: else
    fi;
    d_step { ledger = 0; ledgerPresent = 0; ledgerOwed = 0 }
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
    :: back != 0 -> semaphoreRelease(back); tellAside()
    :: else
    fi;
    back = 0
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
    bool swapped, taken, held, last

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
