orn_unit(events/EventSubscription)
