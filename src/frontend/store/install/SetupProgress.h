#pragma once

/// How far the set-up of a bottle is, in percent. It creeps towards the share of the next step and never
/// passes it. A plain value.
struct SetupProgress {
    int progress = 0;
    int target = 1;  ///< the share at which the present step ends

    /// A step begins; counted from 0. A number of steps below 1 counts as 1. Returns the value that was shown
    /// before.
    int beginStep(int step, int steps);
    /// One percent more, unless the target is reached. Whether it has changed.
    bool creep();
};
