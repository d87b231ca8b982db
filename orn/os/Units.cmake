orn_unit(os/CodePage)
orn_unit(os/Com)
orn_unit(os/ErrorText)
orn_unit(os/Format)
