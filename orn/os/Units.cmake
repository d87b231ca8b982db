orn_unit(os/Com)
orn_unit(os/ErrorText)
