// Host package of the message and resource services.
