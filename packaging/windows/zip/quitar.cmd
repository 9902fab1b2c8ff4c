@"%~dp0instalar.cmd" /quitar %*
