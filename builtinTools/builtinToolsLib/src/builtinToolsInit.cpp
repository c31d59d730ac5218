// Root package of the tool library.
