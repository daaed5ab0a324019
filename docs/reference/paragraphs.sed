# A text's parts, "Thread: ..." and its like, each begin a line of the reference.
s,^( *///) (Thread|Completion|Lifetime|Fork|Errors|Nesting): ,\1 @n <b>\2:</b> ,
