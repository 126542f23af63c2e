<?php
/* Kovix: the configuration of the PHP that serves this tree (opened from the panel). */
phpinfo();
